#include "prefs/ui/check_sign.h"

#include <QPainter>
#include <QPainterPath>

namespace tockwise {

CheckSign::CheckSign(bool ok, QWidget* parent) : QWidget(parent), m_ok(ok) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleName(ok ? QStringLiteral("works") : QStringLiteral("does not work"));
}

QSize CheckSign::sizeHint() const {
  const int side = fontMetrics().height();
  return {side, side};
}

void CheckSign::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double side = std::min(width(), height());
  painter.translate((width() - side) / 2, (height() - side) / 2);
  painter.scale(side / 20, side / 20); // drawn on a square of 20
  painter.setPen(Qt::NoPen);
  painter.setBrush(m_ok ? QColor(0x1e, 0x8e, 0x4e) : QColor(0xd0, 0x5a, 0x00));
  QPainterPath shape;
  if (m_ok) {
    shape.addEllipse(1, 1, 18, 18);
  } else {
    shape.moveTo(10, 1);
    shape.lineTo(19.5, 18.5);
    shape.lineTo(0.5, 18.5);
    shape.closeSubpath();
  }
  painter.drawPath(shape);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  if (m_ok) {
    painter.drawPolyline(QPolygonF{{5.5, 10.5}, {8.7, 13.7}, {14.5, 6.8}});
  } else {
    painter.drawLine(QPointF(10, 7.5), QPointF(10, 12));
    painter.drawPoint(QPointF(10, 15.5));
  }
}

} // namespace tockwise
