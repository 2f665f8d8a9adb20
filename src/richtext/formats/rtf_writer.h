// The RTF of a text, with a choice of how its attachments stand in it.
#pragma once

#include "store/archive/attributed_text.h"

#include <functional>

namespace tockwise {

/// The RTF group of one attachment.
using AttachmentGroup = std::function<QByteArray(const TextAttachment&)>;

QByteArray writeRTF(const AttributedText& text, const AttachmentGroup& attachmentGroup);

/// text escaped to stand in RTF, in ASCII only.
QByteArray escapedForRTF(QStringView text);

/// The attachment inline, as a picture; its name in brackets when it is none.
QByteArray pictureGroup(const TextAttachment& attachment);

} // namespace tockwise
