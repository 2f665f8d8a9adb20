// Reminders documents on the disk.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

namespace tockwise {

inline constexpr char16_t kDocumentSuffix[] = u"tockwise";
inline constexpr char16_t kDocumentMimeType[] = u"application/vnd.quillstone.tockwise";
/// Larger files are refused unread, bytes.
inline constexpr qint64 kLargestDocument = qint64(256) * 1024 * 1024;

/// The bytes of the file, which must be a regular one: pipes and devices are not waited for.
/// NotFound, Refused (too large) or Storage (no permission, no regular file, an error while
/// reading); the message starts with the path. Any one thread.
Result<QByteArray> readDocument(const QString& path);

/// Writes atomically: a temporary file in the same folder, synced and moved into place; the file
/// that was there stays whole when it fails. A new file has the mode that the user's umask leaves,
/// one that is replaced keeps its own; a link is followed. NotFound (no such folder), Refused (no
/// regular file is there) or Storage; the message starts with the path. Any one thread.
Result<void> writeDocument(const QString& path, const QByteArray& archive);

} // namespace tockwise
