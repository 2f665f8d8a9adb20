// Lists in which the markers are part of the text: tab, marker, tab, with a hanging indent, as
// archives have them.
#pragma once

#include <QTextCursor>

namespace tockwise {

enum class ListKind { None, Bullets, Numbers };

/// The kind of list that the paragraph of the cursor is an item of, told by its text.
ListKind listKindAt(const QTextCursor& cursor);

/// Makes the paragraphs of the selection items of such a list, or of none; one step of undo.
void setList(const QTextCursor& selection, ListKind kind);

/// What Return does in an item: begins the next one, or, in an empty one, ends the list. False, and
/// nothing is done, when the cursor is not in the text of an item or text is selected.
bool continueList(QTextCursor& cursor);

/// What Backspace does at the beginning of an item: takes its marker away. False likewise.
bool leaveList(QTextCursor& cursor);

} // namespace tockwise
