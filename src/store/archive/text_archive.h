// Archived rich text: what the elements of reminderRTFs hold. docs/archive-formats.md describes
// the formats.
#pragma once

#include "base/result.h"
#include "store/archive/attributed_text.h"

#include <QStringList>

namespace tockwise {

struct UnarchivedText {
  AttributedText text;
  /// Whether the archive's root is a text storage; else it is another attributed string.
  bool isTextStorage = false;
  /// What could not be taken over, in words for the log; empty as a rule.
  QStringList notes;
};

/// Reads a keyed archive whose root is an attributed string. Damaged when it is none; a damaged
/// attribute costs that attribute, and damaged runs leave the plain text (with a note). Any one
/// thread.
Result<UnarchivedText> unarchiveText(const QByteArray& archive);

/// The text of an archive whose root is a text storage: what titles, alerts and the editor show.
/// NotFound for an archive of anything else; Damaged as above.
Result<AttributedText> unarchiveTextStorage(const QByteArray& archive);

/// The text as a keyed archive of a text storage. Values with an original are written as they
/// stood. Any one thread.
QByteArray archiveText(const AttributedText& text);

} // namespace tockwise
