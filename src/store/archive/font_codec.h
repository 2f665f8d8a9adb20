// Fonts in keyed archives.
#pragma once

#include "store/archive/attributed_text.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_writer.h"

#include <optional>

namespace tockwise {

/// Sizes are kept within 0.5 to 2000 points. Nothing when the object is no font with a name.
std::optional<TextFont> decodeFont(const KeyedArchive& archive, KeyedArchive::Uid uid);

KeyedWriter::Uid encodeFont(KeyedWriter& writer, const TextFont& font);

} // namespace tockwise
