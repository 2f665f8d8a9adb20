// Paragraph styles in keyed archives, with their tabs and lists.
#pragma once

#include "store/archive/attributed_text.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_writer.h"

#include <optional>

namespace tockwise {

/// Nothing when the object is no paragraph style. What of it is damaged has its default.
std::optional<ParagraphStyle> decodeParagraphStyle(const KeyedArchive& archive,
                                                   KeyedArchive::Uid uid);

KeyedWriter::Uid encodeParagraphStyle(KeyedWriter& writer, const ParagraphStyle& style);

} // namespace tockwise
