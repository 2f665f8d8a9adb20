// Where the windows of an editor open.
#pragma once

#include <QWidget>

namespace tockwise {

/// Puts window, before it is shown, over the middle of the frame of its owner, as far as the
/// screen allows. Without a visible owner it is left to the desktop. Main thread.
void placeOverOwner(QWidget& window);

/// Puts window, before it is shown, where it hides none of the others, which are visible, and they
/// do not hide it; without any it is left to the desktop. Main thread.
void placeBeside(QWidget& window, const QWidgetList& others);

} // namespace tockwise
