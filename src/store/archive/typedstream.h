// Reader of the older, non-keyed archives ("streamtyped"), in which rich text was kept once.
#pragma once

#include "base/result.h"
#include "store/archive/text_archive.h"

namespace tockwise {

bool looksLikeTypedstream(const QByteArray& bytes);

/// Reads an archive whose root is an attributed string. notes say what has no place in our form
/// (paragraph styles, unknown attributes). Damaged when it is no such archive. Any one thread.
Result<UnarchivedText> readTypedstreamText(const QByteArray& archive);

} // namespace tockwise
