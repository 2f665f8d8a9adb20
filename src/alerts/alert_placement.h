// Where a new alert window goes.
#pragma once

#include <QList>
#include <QRect>

namespace tockwise {

/// The height of a title bar as long as a window's frame is not known (pixels).
inline constexpr int kLikelyTitleBar = 32;

/// The top left corner for a window of that size (its frame included, in pixels): the centre of
/// the work area, or the place nearest to it at which neither the new window nor one of alerts
/// (oldest first) hides another completely, whichever of them is on top, and which, where there
/// is room for that, leaves all of clear free (a question that is open). Where there are too many
/// alerts they are cascaded. The window lies within the work area when it fits.
QPoint placeAlert(QSize size, const QRect& workArea, const QList<QRect>& alerts,
                  const QList<QRect>& clear = {});

} // namespace tockwise
