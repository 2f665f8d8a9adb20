// Reading RTF whose attachments may be files beside it.
#pragma once

#include "base/result.h"
#include "store/archive/attributed_text.h"

#include <functional>
#include <optional>

namespace tockwise {

/// The contents of the file of that name beside the RTF; nothing when there is none.
using AttachedFile = std::function<std::optional<QByteArray>(const QString& name)>;

/// Damaged when bytes are no RTF or nest too deep; RTF that ends early gives what there is.
Result<AttributedText> readRTF(const QByteArray& bytes, const AttachedFile& attachedFile);

} // namespace tockwise
