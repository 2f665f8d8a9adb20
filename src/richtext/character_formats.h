// Attributes of archived text as Qt's character formats, and back.
#pragma once

#include "store/archive/attributed_text.h"

#include <QTextCharFormat>

namespace tockwise {

/// attributes as they are shown, and as they came. Pictures are not shown by it
/// (attachmentFormat). Main thread.
QTextCharFormat characterFormat(const TextAttributes& attributes);

/// The attributes that a format stands for: of each, the one that it came with where what is shown
/// is what would be shown of it, else a new one. The paragraph's style and an attachment are those
/// that it came with. defaultSize: of text without a font, in points.
TextAttributes attributesOf(const QTextCharFormat& format, double defaultSize);

/// The attributes that the format came with; null when it has none.
const TextAttributes* originOf(const QTextCharFormat& format);

/// Keeps attributes as those that the format came with.
void setOrigin(QTextCharFormat& format, const TextAttributes& attributes);

/// To be merged into the format of text to make it a link that shows as one, or, with an empty
/// address, to end a link and its look. Main thread.
QTextCharFormat linkFormat(const QString& address);

} // namespace tockwise
