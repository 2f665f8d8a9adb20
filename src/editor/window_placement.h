// Where the windows of an editor open.
#pragma once

class QWidget;

namespace tockwise {

/// Puts window, before it is shown, over the middle of the frame of its owner, as far as the
/// screen allows. Without a visible owner it is left to the desktop. Main thread.
void placeOverOwner(QWidget& window);

} // namespace tockwise
