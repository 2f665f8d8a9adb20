// How a ruler is drawn.
#pragma once

#include "richtext/ruler_marks.h"
#include "richtext/ruler_scale.h"

#include <QLocale>
#include <QPalette>
#include <QRectF>

class QPainter;

namespace tockwise {

inline constexpr int kRulerHeight = 26; // pixels

/// Where the text stands below a ruler, in the ruler's pixels.
struct RulerSpan {
  double left = 0;
  double width = 0;
  bool isRightToLeft = false;

  /// From a length in RulerMarks' sense to a place; fromTail: of a tail indent.
  double place(double length, bool fromTail = false) const;
  double length(double place, bool fromTail = false) const;
};

struct RulerLook {
  QPalette palette;
  QLocale locale;
  RulerScale scale;
};

/// The band, its marks of length and its numbers, in the whole rect.
void paintScale(QPainter& painter, const QRectF& rect, const RulerSpan& span,
                const RulerLook& look);

/// The area in which a mark is drawn and taken.
QRectF markArea(const RulerMarks& marks, const RulerMark& mark, const RulerSpan& span);

/// isChosen: the keyboard moves it.
void paintMark(QPainter& painter, const RulerMarks& marks, const RulerMark& mark,
               const RulerSpan& span, const QPalette& palette, bool isChosen);

} // namespace tockwise
