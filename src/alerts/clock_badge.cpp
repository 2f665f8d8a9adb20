#include "alerts/clock_badge.h"

#include "alerts/alert_look.h"

#include <QPainter>

namespace tockwise {
namespace {

void drawTicks(QPainter& painter) {
  for (int tick = 0; tick < 12; ++tick) {
    const bool quarter = tick % 3 == 0;
    painter.save();
    painter.rotate(tick * 30.0);
    painter.setOpacity(quarter ? 1.0 : 0.45);
    painter.drawLine(QPointF(0, -40), QPointF(0, quarter ? -34 : -37));
    painter.restore();
  }
}

void drawHand(QPainter& painter, double degrees, double length, double width) {
  QPen pen = painter.pen();
  pen.setWidthF(width);
  painter.save();
  painter.setPen(pen);
  painter.rotate(degrees);
  painter.drawLine(QPointF(0, 0), QPointF(0, -length));
  painter.restore();
}

} // namespace

ClockBadge::ClockBadge(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ClockBadge::setTime(int hour, int minute) {
  m_hour = hour;
  m_minute = minute;
  update();
}

QSize ClockBadge::sizeHint() const {
  const int side = fontMetrics().height() * 7 / 2;
  return {side, side};
}

void ClockBadge::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double side = std::min(width(), height());
  painter.translate(width() / 2.0, height() / 2.0);
  painter.scale(side / 104, side / 104); // the drawing's own units: a radius of 50

  const QColor accent = alertAccent(palette());
  QLinearGradient face(0, -50, 0, 50);
  face.setColorAt(0, accent.lighter(118));
  face.setColorAt(1, accent.darker(112));
  painter.setPen(Qt::NoPen);
  painter.setBrush(face);
  painter.drawEllipse(QPointF(0, 0), 50, 50);

  QPen pen(textOn(accent), 3.6, Qt::SolidLine, Qt::RoundCap);
  painter.setPen(pen);
  drawTicks(painter);
  drawHand(painter, (m_hour % 12 + m_minute / 60.0) * 30, 20, 6.5);
  drawHand(painter, m_minute * 6.0, 29, 4.6);
  painter.setPen(Qt::NoPen);
  painter.setBrush(pen.color());
  painter.drawEllipse(QPointF(0, 0), 4.4, 4.4);
}

} // namespace tockwise
