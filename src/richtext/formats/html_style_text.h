// Attributes as the text of a style attribute of HTML, safe to stand between double quotes.
#pragma once

#include "store/archive/attributed_text.h"

namespace tockwise {

/// Font, colour and background; empty when there is none of them.
QString characterStyleText(const TextAttributes& attributes);

/// Margins, indents, alignment, line height and tab stops; style may be null.
QString paragraphStyleText(const ParagraphStyle* style);

/// The attribute (with a space before it) for the kind of an underline or a strikethrough; empty
/// for a single line.
QString lineStyleText(qint64 kind);

} // namespace tockwise
