// Archived rich text as the runs that menus and the command line show.
#pragma once

#include "menu/rich_text.h"
#include "store/archive/attributed_text.h"

#include <optional>

namespace tockwise {

RichText richRuns(const AttributedText& text);

/// The runs of an archived text storage; nothing when the archive holds none. For RichTitles.
std::optional<RichText> unarchiveRuns(const QByteArray& archive);

} // namespace tockwise
