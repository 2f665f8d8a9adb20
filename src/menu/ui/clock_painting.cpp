#include "menu/ui/clock_painting.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tockwise {
namespace {

const QColor kInk(0x26, 0x32, 0x45);
const QColor kFace(0xff, 0xff, 0xff);
const QColor kShade(0xe3, 0xea, 0xf4);
const QColor kAccent(0xf2, 0x7d, 0x2d);
const QColor kBlue(0x2b, 0x77, 0xd9);
const QColor kBlueDark(0x1b, 0x57, 0xa8);
const QColor kGreen(0x1f, 0x9d, 0x8b);
const QColor kBadge(0xd9, 0x2d, 0x20);

QRectF square(const QRect& rect) {
  const int side = std::min(rect.width(), rect.height());
  const QPoint corner(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
  return QRectF(QRect(corner, QSize(side, side)));
}

/// A whole number of pixels, so that lines stay sharp at small sizes.
double snapped(double pixels, double least = 1) {
  return std::max(least, std::round(pixels));
}

QRectF disc(QPointF middle, double radius) {
  return QRectF(middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius);
}

/// A hand from the middle towards an hour's angle (0 to 12).
void paintHand(QPainter& painter, QPointF middle, double length, double hour, const QColor& color,
               double width) {
  const double angle = hour / 12 * 2 * std::numbers::pi;
  painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(middle, middle + QPointF(std::sin(angle), -std::cos(angle)) * length);
}

void paintTicks(QPainter& painter, QPointF middle, double radius, const QColor& color,
                double width) {
  painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
  for (int tick = 0; tick < 4; ++tick) {
    const double angle = tick * std::numbers::pi / 2;
    const QPointF direction(std::sin(angle), -std::cos(angle));
    painter.drawLine(middle + direction * radius * 0.84, middle + direction * radius * 0.95);
  }
}

void fillDisc(QPainter& painter, QPointF middle, double radius, const QBrush& brush) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  painter.drawEllipse(disc(middle, radius));
}

/// Ring and face; the pale line around it is what shows on a dark panel.
void paintFace(QPainter& painter, QPointF middle, double radius, double ring, const QColor& rim,
               const QColor& face) {
  fillDisc(painter, middle, radius, QColor(255, 255, 255, 170));
  fillDisc(painter, middle, radius - std::max(0.5, ring / 3), rim);
  fillDisc(painter, middle, radius - std::max(0.5, ring / 3) - ring, face);
}

// A plain round clock at ten past ten.
void paintRoundClock(QPainter& painter, const QRectF& box) {
  const double side = box.width();
  const QPointF middle = box.center();
  const double radius = side / 2;
  const double ring = snapped(side / 11);
  paintFace(painter, middle, radius, ring, kInk, kFace);
  if (side >= 22)
    paintTicks(painter, middle, radius - ring - side / 24, kInk, std::max(1.0, side / 26));
  paintHand(painter, middle, radius * 0.42, 10.2, kInk, snapped(side / 12, 1.5));
  paintHand(painter, middle, radius * 0.62, 2, kAccent, snapped(side / 14, 1.5));
  fillDisc(painter, middle, side / 18, kInk);
}

// An alarm clock with two bells.
void paintAlarmClock(QPainter& painter, const QRectF& box) {
  const double side = box.width();
  const QPointF middle = box.center() + QPointF(0, side * 0.06);
  const double radius = side * 0.41;
  const double ring = snapped(side / 11);
  for (const double direction : {-1.0, 1.0}) {
    const QPointF bell = middle + QPointF(direction * radius * 0.72, -radius * 0.86);
    fillDisc(painter, bell, side * 0.155, QColor(255, 255, 255, 170));
    fillDisc(painter, bell, side * 0.13, kAccent);
    const QPointF foot = middle + QPointF(direction * radius * 0.72, radius * 0.98);
    painter.setPen(QPen(kInk, snapped(side / 12), Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle + (foot - middle) * 0.7, foot);
  }
  paintFace(painter, middle, radius, ring, kGreen.darker(130), kFace);
  paintHand(painter, middle, radius * 0.58, 12, kInk, snapped(side / 13, 1.5));
  paintHand(painter, middle, radius * 0.46, 4, kInk, snapped(side / 13, 1.5));
}

// A solid disc with white hands.
void paintSolidClock(QPainter& painter, const QRectF& box) {
  const double side = box.width();
  const QPointF middle = box.center();
  QLinearGradient shade(box.topLeft(), box.bottomLeft());
  shade.setColorAt(0, kBlue);
  shade.setColorAt(1, kBlueDark);
  fillDisc(painter, middle, side / 2, QColor(255, 255, 255, 170));
  fillDisc(painter, middle, side / 2 - std::max(0.5, side / 32), shade);
  paintHand(painter, middle, side * 0.32, 12, kFace, snapped(side / 11, 1.5));
  paintHand(painter, middle, side * 0.24, 3, kFace, snapped(side / 11, 1.5));
}

// A dark tile with a dial of twelve dots.
void paintTileClock(QPainter& painter, const QRectF& box) {
  const double side = box.width();
  const QPointF middle = box.center();
  const double line = std::max(1.0, side / 24);
  const QRectF tile = box.adjusted(line / 2, line / 2, -line / 2, -line / 2);
  painter.setPen(QPen(QColor(255, 255, 255, 190), line));
  painter.setBrush(kInk);
  painter.drawRoundedRect(tile, side * 0.24, side * 0.24);
  const int dots = side >= 22 ? 12 : 4;
  for (int dot = 0; dot < dots; ++dot) {
    const double angle = dot * 2 * std::numbers::pi / dots;
    const QPointF place = middle + QPointF(std::sin(angle), -std::cos(angle)) * side * 0.35;
    fillDisc(painter, place, dot % (dots / 4) == 0 ? side / 22 : side / 34, kShade);
  }
  paintHand(painter, middle, side * 0.2, 8, kFace, snapped(side / 12, 1.5));
  paintHand(painter, middle, side * 0.28, 1, kAccent, snapped(side / 13, 1.5));
}

// A round clock on a rounded tile, as launchers show programs.
void paintApplication(QPainter& painter, const QRectF& box) {
  const double side = box.width();
  QLinearGradient shade(box.topLeft(), box.bottomRight());
  shade.setColorAt(0, QColor(0x3d, 0x8b, 0xe8));
  shade.setColorAt(1, kBlueDark);
  painter.setPen(Qt::NoPen);
  painter.setBrush(shade);
  const double margin = std::round(side * 0.04);
  painter.drawRoundedRect(box.adjusted(margin, margin, -margin, -margin), side * 0.22, side * 0.22);
  const QPointF middle = box.center();
  const bool small = side < 32; // no room for twelve dots: a larger face, with four or none
  const double radius = side * (small ? 0.38 : 0.34);
  fillDisc(painter, middle, radius, kFace);
  for (int tick = 0; side >= 20 && tick < 12; tick += small ? 3 : 1) {
    const double angle = tick * std::numbers::pi / 6;
    const QPointF direction(std::sin(angle), -std::cos(angle));
    fillDisc(painter, middle + direction * radius * 0.84,
             tick % 3 == 0 ? std::max(0.6, side / 40) : side / 75, kInk);
  }
  paintHand(painter, middle, radius * 0.46, 10.2, kInk, std::max(1.5, side / 17));
  paintHand(painter, middle, radius * 0.66, 2, kAccent, std::max(1.5, side / 20));
  fillDisc(painter, middle, side / 24, kInk);
}

} // namespace

void paintClock(QPainter& painter, const QRect& rect, int design) {
  const QRectF box = square(rect);
  painter.save();
  switch (design) {
  case kApplicationDesign:
    paintApplication(painter, box);
    break;
  case 2:
    paintAlarmClock(painter, box);
    break;
  case 3:
    paintSolidClock(painter, box);
    break;
  case 4:
    paintTileClock(painter, box);
    break;
  default:
    paintRoundClock(painter, box);
    break;
  }
  painter.restore();
}

void paintBadge(QPainter& painter, const QRect& rect, const QString& text) {
  const QRectF box = square(rect);
  const double side = box.width();
  // The smaller the icon, the more of it the number needs to be read.
  const double height = snapped(side * (side <= 24 ? 0.62 : 0.52));
  QFont font;
  font.setBold(true);
  font.setStretch(text.size() > 2 ? 75 : 100);
  font.setPixelSize(int(snapped(height * (text.size() > 2 ? 0.72 : 0.84), 6)));
  const double width =
      std::clamp(QFontMetricsF(font).horizontalAdvance(text) + side * 0.16, height, side);
  const QRectF badge(box.right() - width, box.bottom() - height, width, height);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 255, 255, 210));
  painter.drawRoundedRect(badge, height / 2, height / 2);
  const double line = std::max(0.5, side / 32);
  painter.setBrush(kBadge);
  painter.drawRoundedRect(badge.adjusted(line, line, -line, -line), height / 2, height / 2);

  // Digits are placed by their outlines: fonts leave different room above and below them.
  QPainterPath digits;
  digits.addText(0, 0, font, text);
  const QRectF bounds = digits.boundingRect();
  const double squeeze = std::min(1.0, (width - 2 * line - 1) / std::max(1.0, bounds.width()));
  painter.save();
  painter.translate(badge.center());
  painter.scale(squeeze, 1);
  painter.translate(-bounds.center());
  painter.fillPath(digits, Qt::white);
  painter.restore();
}

} // namespace tockwise
