#include "editor/window_placement.h"

#include <QScreen>

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

void placeBeside(QWidget& window, const QWidgetList& others) {
  constexpr int kStep = 32; // pixels: the title bar below stays to be seen
  if (others.isEmpty() || !others.front()->screen())
    return;
  const auto isTaken = [&](QPoint place) {
    return std::any_of(others.begin(), others.end(), [place](const QWidget* other) {
      return (other->pos() - place).manhattanLength() < kStep;
    });
  };
  const QRect screen = others.front()->screen()->availableGeometry();
  const QSize frame = others.front()->frameGeometry().size() - others.front()->size();
  QRect place(others.front()->pos(), window.size() + frame);
  for (qsizetype i = 0; i < others.size() && isTaken(place.topLeft()); ++i)
    place.translate(kStep, kStep);
  if (place.bottom() > screen.bottom())
    place.moveTop(screen.top());
  if (place.right() > screen.right())
    place.moveLeft(screen.left());
  window.move(place.topLeft());
}

} // namespace tockwise
