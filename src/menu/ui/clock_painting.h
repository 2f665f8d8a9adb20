// How the clocks are drawn.
#pragma once

class QPainter;
class QRect;
class QString;

namespace tockwise {

/// The design of the application's icon, beside the four of the status item.
inline constexpr int kApplicationDesign = 0;

/// Draws a clock into the largest square in the middle of rect. The painter antialiases.
void paintClock(QPainter& painter, const QRect& rect, int design);

/// Draws text (one to three characters) as a badge over the lower right of the clock.
void paintBadge(QPainter& painter, const QRect& rect, const QString& text);

} // namespace tockwise
