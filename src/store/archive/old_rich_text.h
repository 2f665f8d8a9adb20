// The one-time conversion of the rich text of releases that stored no dataVersion.
#pragma once

#include "store/archive/attributed_text.h"
#include "store/value.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace tockwise {

/// Scales the pictures of a text that are too wide, and returns how many it scaled.
using ScaleAttachments = std::function<int(AttributedText&)>;
/// Writes a text as a keyed archive; empty when it could not.
using ArchiveText = std::function<QByteArray(const AttributedText&)>;

/// rtfs: the stored reminderRTFs as an array. Elements that are older archives of a text storage
/// become keyed archives; all other data stay as they are. Returns the converted array, or nothing
/// when an element is no data or could not be written, or rtfs is no array: the store is then to be
/// left as it was. Logs the outcomes. Any one thread.
std::optional<Value> convertOldRichText(const Value& rtfs, const ScaleAttachments& scale);
std::optional<Value> convertOldRichText(const Value& rtfs, const ScaleAttachments& scale,
                                        const ArchiveText& archive);

} // namespace tockwise
