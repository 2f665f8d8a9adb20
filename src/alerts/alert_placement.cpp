#include "alerts/alert_placement.h"

#include <algorithm>

namespace tockwise {
namespace {

constexpr int kStep = 36;         // a title bar and a little of what is below it
constexpr int kMostCompared = 16; // bounds the work when a queue of alerts opens at once

QPoint keptInside(QPoint corner, QSize size, const QRect& area) {
  const int right = std::max(area.left(), area.left() + area.width() - size.width());
  const int bottom = std::max(area.top(), area.top() + area.height() - size.height());
  return {std::clamp(corner.x(), area.left(), right), std::clamp(corner.y(), area.top(), bottom)};
}

/// Whether a strip of below is seen beside above.
bool leavesStrip(const QRect& below, const QRect& above) {
  return above.left() - below.left() >= kStep || above.top() - below.top() >= kStep ||
         below.right() - above.right() >= kStep || below.bottom() - above.bottom() >= kStep;
}

/// Whether a corner of below, or its middle, is seen when all of above lie on it.
bool showsCorner(const QRect& below, const QList<QRect>& above) {
  const int inset = kStep / 2;
  const QRect inner = below.adjusted(inset, inset, -inset, -inset);
  const QPoint points[] = {inner.topLeft(), inner.topRight(), inner.bottomLeft(),
                           inner.bottomRight(), inner.center()};
  return std::any_of(std::begin(points), std::end(points), [&](QPoint point) {
    return std::none_of(above.begin(), above.end(),
                        [&](const QRect& rect) { return rect.contains(point); });
  });
}

bool everyoneIsSeen(const QRect& candidate, const QList<QRect>& others) {
  for (qsizetype i = 0; i < others.size(); ++i) {
    if (!leavesStrip(others[i], candidate) || !leavesStrip(candidate, others[i]))
      return false;
    QList<QRect> above = others.mid(i + 1);
    above += candidate;
    if (!showsCorner(others[i], above))
      return false;
  }
  return true;
}

/// Places to try, best first: the diagonal through the centre, then a grid by distance.
QList<QPoint> candidates(QPoint centre, QSize size, const QRect& area) {
  QList<QPoint> diagonal{centre};
  for (int i = 1; i <= 12; ++i) {
    diagonal += centre + QPoint(i, i) * kStep;
    diagonal += centre - QPoint(i, i) * kStep;
  }
  QList<QPoint> grid;
  for (int y = area.top(); y <= area.top() + area.height() - size.height(); y += kStep) {
    for (int x = area.left(); x <= area.left() + area.width() - size.width(); x += kStep)
      grid += QPoint(x, y);
  }
  std::stable_sort(grid.begin(), grid.end(), [&](QPoint a, QPoint b) {
    return (a - centre).manhattanLength() < (b - centre).manhattanLength();
  });
  return diagonal + grid;
}

} // namespace

QPoint placeAlert(QSize size, const QRect& workArea, const QList<QRect>& alerts,
                  const QList<QRect>& clear) {
  const QPoint centre =
      keptInside(workArea.center() - QPoint(size.width() / 2, size.height() / 2), size, workArea);
  const QList<QRect> compared = alerts.mid(std::max<qsizetype>(0, alerts.size() - kMostCompared));
  const QList<QPoint> places = candidates(centre, size, workArea);
  for (const bool keepClear : {true, false}) {
    for (const QPoint& place : places) {
      const QRect candidate(place, size);
      const bool covers = std::any_of(clear.begin(), clear.end(), [&](const QRect& rect) {
        return rect.intersects(candidate);
      });
      if (keptInside(place, size, workArea) == place && !(keepClear && covers) &&
          everyoneIsSeen(candidate, compared + (keepClear ? QList<QRect>() : clear)))
        return place;
    }
    if (clear.isEmpty())
      break;
  }
  const int width = std::max(1, workArea.width() - size.width());
  const int height = std::max(1, workArea.height() - size.height());
  const int turn = int(alerts.size()) * kStep;
  return workArea.topLeft() + QPoint(turn % width, turn % height);
}

} // namespace tockwise
