// Colours in keyed archives.
#pragma once

#include "store/archive/attributed_text.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_writer.h"

#include <optional>

namespace tockwise {

/// RGB, grey, CMYK and catalogue colours, the last by their fallback. Nothing for other kinds
/// (pictures as patterns) and when the object is no colour.
std::optional<TextColor> decodeColor(const KeyedArchive& archive, KeyedArchive::Uid uid);

/// The system's colours of that name mean the theme's text or text background.
bool colorNameFollowsTheme(const QString& name);

KeyedWriter::Uid encodeColor(KeyedWriter& writer, const TextColor& color);

} // namespace tockwise
