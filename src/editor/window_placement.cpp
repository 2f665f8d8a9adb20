#include "editor/window_placement.h"

#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace tockwise {

void placeOverOwner(QWidget& window) {
  const QWidget* owner = window.parentWidget() ? window.parentWidget()->window() : nullptr;
  if (!owner || !owner->isVisible() || !owner->screen())
    return;
  window.adjustSize();
  QRect place(QPoint(), window.size());
  place.moveCenter(owner->frameGeometry().center());
  const QRect screen = owner->screen()->availableGeometry();
  place.moveLeft(std::max(std::min(place.left(), screen.right() - place.width()), screen.left()));
  place.moveTop(std::max(std::min(place.top(), screen.bottom() - place.height()), screen.top()));
  window.move(place.topLeft());
}

} // namespace tockwise
