// The icon of a file with reminders.
#pragma once

class QPainter;
class QRect;

namespace tockwise {

/// Draws a sheet of paper with the application's clock into the square rect. The painter
/// antialiases. Any one thread.
void paintDocument(QPainter& painter, const QRect& rect);

} // namespace tockwise
