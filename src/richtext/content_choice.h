// What of a clipboard or drag a text takes.
#pragma once

#include "richtext/content_loading.h"

#include <QMimeData>

#include <optional>

namespace tockwise {

/// Whether there is anything that a text takes. Main thread.
bool hasContent(const QMimeData& data);

/// What is to be read, the best first: rich text, a picture, files. Nothing when there is plain
/// text only. Reads no more than it must: the work is loadContent()'s. Main thread.
std::optional<IncomingContent> contentOf(const QMimeData& data);

/// Marks data with the text that it was made of, so that the same program need not read its own
/// formats. Main thread.
void rememberText(QMimeData& data, const AttributedText& text);

} // namespace tockwise
