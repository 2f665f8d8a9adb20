// What a text that comes from somewhere else may be at most.
#pragma once

#include "store/archive/attributed_text.h"

namespace tockwise {

/// More runs than any person writes: what follows goes on in the attributes of the last.
inline constexpr size_t kMostRuns = 20000;

/// Appends more to text, which stays within those limits.
void appendLimited(AttributedText& text, const QString& more, const TextAttributes& attributes);

} // namespace tockwise
