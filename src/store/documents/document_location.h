// Where a document lies, from what a desktop or a user calls it.
#pragma once

#include <QString>

#include <optional>

namespace tockwise {

/// Whether the name ends as the names of reminders documents do, in small letters or capitals.
/// Any thread.
bool hasDocumentSuffix(const QString& path);

/// The path with the suffix of reminders documents, which is added when it is missing. Any thread.
QString withDocumentSuffix(const QString& path);

/// Whether the words are a URL of the scheme "file". Any thread.
bool isFileURL(const QString& words);

/// The absolute path that a URL of the scheme "file" names on this machine; nothing for any other
/// URL and for a file on another machine. Any thread.
std::optional<QString> localPathOf(const QString& url);

} // namespace tockwise
