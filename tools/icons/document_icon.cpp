#include "document_icon.h"

#include "menu/ui/clock_painting.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

const QColor kPaper(0xfd, 0xfd, 0xfe);
const QColor kEdge(0x8a, 0x97, 0xaa);
const QColor kFold(0xd5, 0xdd, 0xe8);
const QColor kLine(0xb9, 0xc4, 0xd3);

double snapped(double pixels, double least = 1) {
  return std::max(least, std::round(pixels));
}

/// The sheet with its folded upper right corner, inset so that its edge lies in whole pixels.
struct Sheet {
  QRectF box;
  double fold;
  double edge;
};

Sheet sheetIn(const QRect& rect) {
  const double side = rect.width();
  const double edge = snapped(side / 64);
  const double width = snapped(side * 0.75);
  const double margin = std::floor((side - width) / 2);
  const double top = std::floor(side * 0.04);
  const QRectF box(rect.x() + margin, rect.y() + top, width, side - 2 * top);
  return {box.adjusted(edge / 2, edge / 2, -edge / 2, -edge / 2), snapped(side * 0.2), edge};
}

void paintSheet(QPainter& painter, const Sheet& sheet) {
  const QRectF& box = sheet.box;
  const QPointF foldLeft(box.right() - sheet.fold, box.top());
  const QPointF foldBelow(box.right(), box.top() + sheet.fold);
  QPainterPath outline(box.topLeft());
  outline.lineTo(foldLeft);
  outline.lineTo(foldBelow);
  outline.lineTo(box.bottomRight());
  outline.lineTo(box.bottomLeft());
  outline.closeSubpath();
  painter.setPen(QPen(kEdge, sheet.edge, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter.setBrush(kPaper);
  painter.drawPath(outline);

  QPainterPath corner(foldLeft);
  corner.lineTo(foldLeft + QPointF(0, sheet.fold));
  corner.lineTo(foldBelow);
  corner.closeSubpath();
  painter.setBrush(kFold);
  painter.drawPath(corner);
}

// Two lines of writing above the clock, where there is room for them.
void paintLines(QPainter& painter, const Sheet& sheet, double side) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(kLine);
  const double height = snapped(side / 32);
  const double left = std::round(sheet.box.left() + side * 0.1);
  for (const int line : {0, 1}) {
    const double top = std::round(sheet.box.top() + side * (0.12 + 0.09 * line));
    const double width = snapped(sheet.box.width() * (line == 0 ? 0.42 : 0.5));
    painter.drawRect(QRectF(left, top, width, height));
  }
}

} // namespace

void paintDocument(QPainter& painter, const QRect& rect) {
  painter.save();
  const int side = rect.width();
  const Sheet sheet = sheetIn(rect);
  paintSheet(painter, sheet);
  const bool lines = side >= 32;
  if (lines)
    paintLines(painter, sheet, side);
  // The clock takes an even part of the sheet, so that it sits in whole pixels.
  const int margin = int(std::floor((side - side * 0.56) / 2));
  const int extent = side - 2 * margin;
  const int lowered = int(std::round(side * (lines ? 0.13 : 0.1)));
  paintClock(painter, QRect(rect.x() + margin, rect.y() + margin + lowered, extent, extent),
             kApplicationDesign);
  painter.restore();
}

} // namespace tockwise
