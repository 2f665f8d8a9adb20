#include "richtext/ruler_painting.h"

#include "colors/color_contrast.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tockwise {
namespace {

constexpr double kBandTop = 5;
constexpr double kBandBottom = 21;
constexpr double kHalfMark = 4;
constexpr int kNumberSize = 9; // pixels

bool isTail(const RulerMark& mark) {
  return mark.kind == RulerMark::Kind::Tail;
}

/// A pointer with its tip at place: down from the top of the ruler, or up from its bottom.
QPainterPath pointer(double place, bool isDown) {
  const double tip = isDown ? 9.5 : 16.5;
  const double base = isDown ? 1.5 : 24.5;
  const double shoulder = isDown ? 5.5 : 20.5;
  QPainterPath path;
  path.moveTo(place, tip);
  path.lineTo(place + kHalfMark, shoulder);
  path.lineTo(place + kHalfMark, base);
  path.lineTo(place - kHalfMark, base);
  path.lineTo(place - kHalfMark, shoulder);
  path.closeSubpath();
  return path;
}

void paintTab(QPainter& painter, double place, QTextOption::TabType type, const QColor& color) {
  constexpr double kTop = 12;
  constexpr double kFoot = 20;
  painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
  painter.setBrush(Qt::NoBrush);
  QPainterPath path;
  path.moveTo(place, kTop);
  path.lineTo(place, kFoot);
  if (type == QTextOption::LeftTab)
    path.lineTo(place + 6, kFoot);
  else if (type == QTextOption::RightTab)
    path.lineTo(place - 6, kFoot);
  painter.drawPath(path);
  if (type == QTextOption::CenterTab)
    painter.drawLine(QPointF(place - 5, kFoot), QPointF(place + 5, kFoot));
}

void paintTick(QPainter& painter, const RulerSpan& span, const RulerLook& look, int tick) {
  const double place = span.place(tick * look.scale.unit / look.scale.parts);
  constexpr double kMiddle = (kBandTop + kBandBottom) / 2;
  const bool isWhole = tick % look.scale.parts == 0;
  if (isWhole) {
    const QString number = look.locale.toString(tick / look.scale.parts);
    painter.drawText(QRectF(place - 20, kBandTop, 40, kBandBottom - kBandTop), Qt::AlignCenter,
                     number);
    return;
  }
  const double half = tick * 2 % look.scale.parts == 0 ? 3 : 1.5;
  painter.drawLine(QPointF(place, kMiddle - half), QPointF(place, kMiddle + half));
}

} // namespace

double RulerSpan::place(double length, bool fromTail) const {
  return isRightToLeft != fromTail ? left + width - length : left + length;
}

double RulerSpan::length(double place, bool fromTail) const {
  return isRightToLeft != fromTail ? left + width - place : place - left;
}

void paintScale(QPainter& painter, const QRectF& rect, const RulerSpan& span,
                const RulerLook& look) {
  const QColor ink = look.palette.color(QPalette::WindowText);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect, look.palette.color(QPalette::Window));
  painter.save();
  QPainterPath band;
  band.addRoundedRect(QRectF(span.left, kBandTop, span.width, kBandBottom - kBandTop), 3, 3);
  painter.setClipRect(rect);
  painter.fillPath(band, look.palette.color(QPalette::Base));
  painter.setPen(QPen(withOpacity(ink, 0.16), 1));
  painter.drawPath(band);
  painter.setClipPath(band, Qt::IntersectClip);
  QFont font = painter.font();
  font.setPixelSize(kNumberSize);
  painter.setFont(font);
  painter.setPen(QPen(withOpacity(ink, 0.6), 1));
  const int last = int(span.width / look.scale.unit * look.scale.parts);
  for (int tick = 1; tick <= last; ++tick)
    paintTick(painter, span, look, tick);
  painter.restore();
}

QRectF markArea(const RulerMarks& marks, const RulerMark& mark, const RulerSpan& span) {
  const double place = span.place(positionOf(marks, mark), isTail(mark));
  switch (mark.kind) {
  case RulerMark::Kind::FirstLine:
    return {place - 6, 0, 12, 11};
  case RulerMark::Kind::Head:
  case RulerMark::Kind::Tail:
    return {place - 6, 15, 12, kRulerHeight - 15};
  case RulerMark::Kind::Tab:
    break;
  }
  return {place - 6, 8, 12, 14};
}

void paintMark(QPainter& painter, const RulerMarks& marks, const RulerMark& mark,
               const RulerSpan& span, const QPalette& palette, bool isChosen) {
  const double place = span.place(positionOf(marks, mark), isTail(mark));
  const QColor accent = palette.color(QPalette::Highlight);
  const QColor ink = palette.color(QPalette::WindowText);
  if (mark.kind == RulerMark::Kind::Tab) {
    paintTab(painter, place, marks.tabs.value(mark.tab).type, isChosen ? accent : ink);
    return;
  }
  const QPainterPath path = pointer(place, mark.kind == RulerMark::Kind::FirstLine);
  painter.setBrush(isChosen ? accent : palette.color(QPalette::Button));
  painter.setPen(QPen(withOpacity(ink, isChosen ? 0.9 : 0.55), 1));
  painter.drawPath(path);
}

} // namespace tockwise
