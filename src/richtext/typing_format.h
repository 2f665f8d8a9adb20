// The format that typed text gets.
#pragma once

class QTextCursor;
class QTextEdit;

namespace tockwise {

/// Text that is typed after a picture is no picture, and text after a link is not part of it. To
/// be called when the cursor moved. Main thread.
void keepTypingPlain(QTextEdit& view);

/// Gives the view that cursor, which may be where the view's is already. Main thread.
void moveCursor(QTextEdit& view, const QTextCursor& cursor);

} // namespace tockwise
