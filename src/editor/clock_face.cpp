#include "editor/clock_face.h"

#include "colors/color_contrast.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QTime>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tockwise {
namespace {

constexpr int kDay = 24 * 60;
constexpr int kHalfDay = 12 * 60;

// The drawing's own units: a face of radius 100.
constexpr double kRadius = 100;
constexpr double kHourLength = 50;
constexpr double kMinuteLength = 76;

/// Clockwise from 12, 0 up to 360.
double degreesOf(const QPointF& point) {
  const double degrees = std::atan2(point.x(), -point.y()) * 180 / std::numbers::pi;
  return degrees < 0 ? degrees + 360 : degrees;
}

double distanceOf(const QPointF& point) {
  return std::hypot(point.x(), point.y());
}

/// The shorter way round between two directions.
double between(double a, double b) {
  const double way = std::abs(a - b);
  return std::min(way, 360 - way);
}

int wrapped(int minutes) {
  return (minutes % kDay + kDay) % kDay;
}

QPointF onCircle(double degrees, double radius) {
  const double radians = degrees * std::numbers::pi / 180;
  return {radius * std::sin(radians), -radius * std::cos(radians)};
}

} // namespace

ClockFace::ClockFace(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  setAccessibleName(QStringLiteral("Clock"));
}

void ClockFace::setTime(int hour, int minute) {
  showMinutes(wrapped(hour * 60 + minute));
}

void ClockFace::clearTime() {
  showMinutes(std::nullopt);
}

void ClockFace::showMinutes(std::optional<int> minutes) {
  if (minutes == m_minutes)
    return;
  m_minutes = minutes;
  setAccessibleDescription(
      minutes ? locale().toString(QTime(hour(), minute()), QLocale::ShortFormat) : QString());
  update();
}

void ClockFace::pick(int minutes) {
  if (m_minutes == minutes)
    return;
  showMinutes(minutes);
  QAccessibleEvent event(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&event);
  Q_EMIT timePicked(hour(), minute());
}

void ClockFace::moveBy(int minutes) {
  pick(wrapped(m_minutes.value_or(kHalfDay) + minutes));
}

QSize ClockFace::sizeHint() const {
  const int side = fontMetrics().height() * 10;
  return {side, side};
}

QSize ClockFace::minimumSizeHint() const {
  const int side = fontMetrics().height() * 6;
  return {side, side};
}

QPointF ClockFace::onFace(const QPointF& position) const {
  const double scale = 2 * kRadius / std::max(1, std::min(width(), height()));
  return (position - QPointF(width() / 2.0, height() / 2.0)) * scale;
}

ClockFace::Hand ClockFace::handAt(const QPointF& point) const {
  const double distance = distanceOf(point);
  if (distance > kRadius * 1.05)
    return Hand::None;
  if (!m_minutes || distance > kHourLength * 1.15)
    return Hand::Minute;
  const double degrees = degreesOf(point);
  const double toHour = between(degrees, *m_minutes % kHalfDay / 2.0);
  return toHour <= between(degrees, minute() * 6.0) ? Hand::Hour : Hand::Minute;
}

void ClockFace::dragTo(const QPointF& point) {
  if (distanceOf(point) < 4)
    return; // in the middle every direction is as good
  const double degrees = degreesOf(point);
  const int from = m_minutes.value_or(kHalfDay);
  if (m_dragged == Hand::Minute) {
    int moved = (int(std::lround(degrees / 6)) % 60) - from % 60;
    if (moved > 30)
      moved -= 60; // the shorter way, past 12
    else if (moved < -30)
      moved += 60;
    pick(wrapped(from + moved));
    return;
  }
  // The hour hand stands between two hours as far as the minute says.
  const int hour = int(std::lround((degrees - from % 60 / 2.0) / 30 + 12)) % 12;
  pick(from / kHalfDay * kHalfDay + hour * 60 + from % 60);
}

void ClockFace::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    QWidget::mousePressEvent(event);
    return;
  }
  const QPointF point = onFace(event->position());
  m_dragged = handAt(point);
  if (m_dragged != Hand::None)
    dragTo(point);
}

void ClockFace::mouseMoveEvent(QMouseEvent* event) {
  if (m_dragged != Hand::None)
    dragTo(onFace(event->position()));
}

void ClockFace::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton)
    m_dragged = Hand::None;
}

void ClockFace::wheelEvent(QWheelEvent* event) {
  const QPoint turned = event->angleDelta(); // some desktops turn Shift+wheel sideways
  m_wheel += turned.y() != 0 ? turned.y() : turned.x();
  const int steps = m_wheel / QWheelEvent::DefaultDeltasPerStep;
  m_wheel -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0)
    moveBy(steps * (event->modifiers().testFlag(Qt::ShiftModifier) ? 60 : 1));
  event->accept();
}

void ClockFace::keyPressEvent(QKeyEvent* event) {
  const int unit = event->modifiers().testFlag(Qt::ShiftModifier) ? 60 : 1;
  switch (event->key()) {
  case Qt::Key_Up:
  case Qt::Key_Right:
    moveBy(unit);
    break;
  case Qt::Key_Down:
  case Qt::Key_Left:
    moveBy(-unit);
    break;
  case Qt::Key_PageUp:
    moveBy(60);
    break;
  case Qt::Key_PageDown:
    moveBy(-60);
    break;
  default:
    QWidget::keyPressEvent(event);
  }
}

void ClockFace::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void ClockFace::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

void ClockFace::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double side = std::min(width(), height()) - 2;
  painter.translate(width() / 2.0, height() / 2.0);
  painter.scale(side / (2 * kRadius), side / (2 * kRadius));
  drawFace(painter);
  drawNumerals(painter);
  if (m_minutes)
    drawHands(painter);
}

void ClockFace::drawFace(QPainter& painter) const {
  const QColor ink = palette().color(QPalette::Text);
  painter.setBrush(palette().color(QPalette::Base));
  painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 3)
                            : QPen(withOpacity(ink, 0.25), 1.5));
  painter.drawEllipse(QPointF(), kRadius - 2, kRadius - 2);
  for (int minute = 0; minute < 60; ++minute) {
    const bool isHour = minute % 5 == 0;
    painter.setPen(QPen(withOpacity(ink, isHour ? 0.6 : 0.25), isHour ? 1.8 : 1.2, Qt::SolidLine,
                        Qt::RoundCap));
    painter.drawLine(onCircle(minute * 6, 93), onCircle(minute * 6, isHour ? 88 : 91));
  }
}

void ClockFace::drawNumerals(QPainter& painter) const {
  QFont numerals = font();
  numerals.setPixelSize(17);
  painter.setFont(numerals);
  painter.setPen(palette().color(QPalette::Text));
  for (int hour = 1; hour <= 12; ++hour) {
    QRectF place(-16, -12, 32, 24);
    place.moveCenter(onCircle(hour * 30, 73));
    painter.drawText(place, Qt::AlignCenter, QString::number(hour));
  }
}

void ClockFace::drawHands(QPainter& painter) const {
  const QColor ink = palette().color(QPalette::Text);
  const QColor accent = palette().color(QPalette::Highlight);
  const double hourDegrees = *m_minutes % kHalfDay / 2.0;
  const double minuteDegrees = minute() * 6.0;
  painter.setPen(QPen(ink, 6, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(), onCircle(hourDegrees, kHourLength));
  painter.setPen(QPen(accent, 4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(onCircle(minuteDegrees + 180, 10), onCircle(minuteDegrees, kMinuteLength + 8));
  painter.setPen(Qt::NoPen);
  painter.setBrush(accent);
  painter.drawEllipse(QPointF(), 6, 6);
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawEllipse(QPointF(), 2, 2);
}

} // namespace tockwise
