#include "alerts/sent_box.h"

#include "alerts/alert_look.h"
#include "colors/color_contrast.h"

#include <QPainter>
#include <QPainterPath>

namespace tockwise {
namespace {

constexpr int kSide = 9; // room left and right of the contents
constexpr int kMark = 10;
constexpr int kGap = 5;

void drawMark(QPainter& painter, const QRectF& place, bool checked) {
  QPainterPath mark;
  if (checked) {
    mark.moveTo(place.left(), place.center().y());
    mark.lineTo(place.left() + place.width() * 0.38, place.bottom() - place.height() * 0.14);
    mark.lineTo(place.right(), place.top() + place.height() * 0.14);
  } else {
    mark.moveTo(place.left() + 1, place.center().y());
    mark.lineTo(place.right() - 1, place.center().y());
  }
  painter.drawPath(mark);
}

} // namespace

SentBox::SentBox(QWidget* parent) : QCheckBox(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont SentBox::badgeFont() const {
  QFont smaller = font();
  smaller.setPointSizeF(smaller.pointSizeF() * 0.9);
  return smaller;
}

QSize SentBox::sizeHint() const {
  const QFontMetrics metrics(badgeFont());
  return {2 * kSide + kMark + kGap + metrics.horizontalAdvance(shownText()), metrics.height() + 8};
}

bool SentBox::hitButton(const QPoint&) const {
  return false;
}

void SentBox::nextCheckState() {}

void SentBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor text = palette().color(QPalette::WindowText);
  const QColor background = palette().color(QPalette::Window);
  const QColor ink = isChecked() ? text : mixed(text, background, 0.62);
  const QRectF outline = QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75);
  const double radius = outline.height() / 2;

  painter.setPen(hasFocus() ? QPen(alertAccent(palette()), 1.5) : QPen(Qt::NoPen));
  painter.setBrush(isChecked() ? QBrush(mixed(alertAccent(palette()), background, 0.2))
                               : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(outline, radius, radius);

  QRect mark(kSide, (height() - kMark) / 2, kMark, kMark);
  QRect label(kSide + kMark + kGap, 0, width() - 2 * kSide - kMark - kGap, height());
  if (layoutDirection() == Qt::RightToLeft) {
    mark.moveLeft(width() - kSide - kMark);
    label.moveLeft(kSide);
  }
  painter.setPen(QPen(isChecked() ? alertAccent(palette()) : ink, 1.9, Qt::SolidLine, Qt::RoundCap,
                      Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  drawMark(painter, mark, isChecked());
  painter.setPen(ink);
  painter.setFont(badgeFont());
  painter.drawText(label, Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

} // namespace tockwise
