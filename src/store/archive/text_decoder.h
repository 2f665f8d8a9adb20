// Attributed strings of keyed archives, read into AttributedText.
#pragma once

#include "base/result.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/text_archive.h"

namespace tockwise {

/// The attributed string at the archive's root. Damaged when there is none, or it has no text. Any
/// one thread.
Result<UnarchivedText> decodeText(const KeyedArchive& archive);

/// Makes text fit to be shown: what is no character becomes U+FFFD, in place. Any thread.
void replaceInvalidUnits(QString& text);

/// Ends all lines of a text with U+000A; a pair of U+000D and U+000A becomes one. The runs follow.
/// Any thread.
void unifyLineEnds(AttributedText& text);

} // namespace tockwise
