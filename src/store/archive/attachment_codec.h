// Attached pictures and files in keyed archives.
#pragma once

#include "store/archive/attributed_text.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_writer.h"

#include <optional>

namespace tockwise {

/// Nothing when the object is no attachment. One whose contents are not understood has none.
std::optional<TextAttachment> decodeAttachment(const KeyedArchive& archive, KeyedArchive::Uid uid);

KeyedWriter::Uid encodeAttachment(KeyedWriter& writer, const TextAttachment& attachment);

} // namespace tockwise
