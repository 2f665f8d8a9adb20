#include "richtext/bar_button.h"

#include "colors/color_contrast.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace tockwise {
namespace {

constexpr int kSide = 30;
constexpr int kArrowWidth = 12;
constexpr int kIconSide = 20;
constexpr double kCorner = 6;

} // namespace

BarButton::BarButton(BarSign sign, const QString& name, QWidget* parent)
    : QToolButton(parent), m_sign(sign) {
  setObjectName(name);
  setFocusPolicy(Qt::TabFocus);
  setAutoRaise(true);
  setIconSize({kIconSide, kIconSide});
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  drawAgain();
}

void BarButton::setSign(BarSign sign) {
  if (sign == m_sign)
    return;
  m_sign = sign;
  drawAgain();
}

void BarButton::setAccent(const QColor& color) {
  if (color == m_accent)
    return;
  m_accent = color;
  drawAgain();
}

void BarButton::setOpensPopup(bool opens) {
  m_opensPopup = opens;
  updateGeometry();
}

QSize BarButton::sizeHint() const {
  return {hasArrow() ? kSide + kArrowWidth : kSide, kSide};
}

void BarButton::drawAgain() {
  const QColor accent = m_accent.isValid() ? m_accent : palette().color(QPalette::Highlight);
  setIcon(barIcon(m_sign, palette().color(QPalette::WindowText), accent));
}

void BarButton::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange)
    drawAgain();
  QToolButton::changeEvent(event);
}

void BarButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF shape = QRectF(rect()).adjusted(1, 1, -1, -1);
  const QColor ink = palette().color(QPalette::WindowText);
  const QColor accent = palette().color(QPalette::Highlight);
  painter.setPen(Qt::NoPen);
  if (isChecked()) {
    painter.setBrush(withOpacity(accent, 0.28));
    painter.drawRoundedRect(shape, kCorner, kCorner);
  }
  if (isEnabled() && (underMouse() || isDown())) {
    painter.setBrush(withOpacity(ink, isDown() ? 0.16 : 0.08));
    painter.drawRoundedRect(shape, kCorner, kCorner);
  }
  if (hasFocus()) {
    painter.setPen(QPen(accent, 1.6));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(shape.adjusted(0.8, 0.8, -0.8, -0.8), kCorner, kCorner);
  }
  const QRect whole(0, 0, width() - (hasArrow() ? kArrowWidth : 0), height());
  QRect place(QPoint(), iconSize());
  place.moveCenter(whole.center() + QPoint(hasArrow() ? 2 : 0, 0));
  place = QStyle::visualRect(layoutDirection(), rect(), place);
  icon().paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
  if (!hasArrow())
    return;
  const QRect arrow = QStyle::visualRect(
      layoutDirection(), rect(), QRect(width() - kArrowWidth - 2, 0, kArrowWidth, height()));
  const QPointF middle = QRectF(arrow).center();
  painter.setPen(QPen(withOpacity(ink, isEnabled() ? 0.6 : 0.25), 1.3, Qt::SolidLine, Qt::RoundCap,
                      Qt::RoundJoin));
  painter.drawPolyline(QPolygonF{middle + QPointF(-2.6, -1.2), middle + QPointF(0, 1.4),
                                 middle + QPointF(2.6, -1.2)});
}

} // namespace tockwise
