#include "painting/painted_icon_engine.h"

#include <QPainter>

namespace tockwise {

QPixmap PaintedIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
  QPixmap pixmap(size);
  pixmap.fill(Qt::transparent); // Qt's own would begin with whatever lies in memory
  QPainter painter(&pixmap);
  paint(&painter, QRect(QPoint(), size), mode, state);
  return pixmap;
}

} // namespace tockwise
