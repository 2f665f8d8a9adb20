// Archived rich text in a QTextDocument and back.
//
// Every format that a run brings along is kept beside what is shown of it (properties of the
// character and block formats), so that what the user does not change is written back as it came:
// fonts that this machine lacks, colours with their original objects, opaque attributes. An
// attribute counts as changed when what is shown of it is not what would be shown of the original.
//
// A style belongs to characters in archives and to paragraphs here. A paragraph shows the style of
// its first character; each of its runs keeps its own until the paragraph's format is changed.
#pragma once

#include "store/archive/attributed_text.h"

#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace tockwise {

/// Replaces the document's contents. Undo history and modified state start afresh. Main thread.
void loadText(const AttributedText& text, QTextDocument& document);

/// Loads the text of an archive whose root is a text storage; false, with the document left as it
/// was, when it holds none. Main thread.
bool loadArchivedText(const QByteArray& archive, QTextDocument& document);

/// Inserts text at the cursor, over its selection, as one step of undo. Main thread.
void insertText(QTextCursor& cursor, const AttributedText& text);

/// The whole document, or the selected part of it. Main thread.
AttributedText textOf(const QTextDocument& document);
AttributedText textOf(const QTextCursor& selection);

/// The format of a picture or file in the text, to be inserted with one U+FFFC; its contents are
/// added to the document's resources. A file that is no picture shows as a generic icon with its
/// name. Main thread.
QTextCharFormat attachmentFormat(const TextAttachment& attachment, QTextDocument& document);
/// The attachment that a format stands for, if it is one.
std::optional<TextAttachment> attachmentOf(const QTextCharFormat& format);

} // namespace tockwise
