// The one-time conversion of rich text that releases without a dataVersion stored.
#pragma once

#include "store/archive/attributed_text.h"
#include "store/value.h"

#include <functional>
#include <optional>

namespace tockwise {

/// Scales the pictures of a text that are too wide, and returns how many it scaled.
using ScaleAttachments = std::function<int(AttributedText&)>;

/// rtfs: the stored reminderRTFs as an array. Returns the converted array, or nothing when any
/// element failed: the store is then to be left as it was. Logs what the rules say to log. Any one
/// thread.
std::optional<Value> convertOldRichText(const Value& rtfs, const ScaleAttachments& scale);

} // namespace tockwise
