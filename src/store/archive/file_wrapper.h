// The container that archives keep attached files in ("rtfd"), which is also flat RTFD.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace tockwise {

/// A regular file, or a folder of others.
struct FileWrapper {
  enum class Type { RegularFile, Folder };
  Type type = Type::RegularFile;
  /// Sanitised: no path, no control characters, at most 255 bytes; never to be used as a path.
  QString name;
  QByteArray contents;               // of a regular file
  std::vector<FileWrapper> children; // of a folder, in their order
  friend bool operator==(const FileWrapper&, const FileWrapper&) = default;
};

/// Damaged when bytes are no sound container, hold an entry that is neither file nor folder, or
/// folders nested deeper than 32. Any one thread.
Result<FileWrapper> readFileWrapper(const QByteArray& bytes);

/// The four-entry form of a regular file, or a folder with its children (whose own name has no
/// place in it). modified: seconds since 1970, 0 for unknown. Precondition: under 2 GiB in all.
/// Any one thread.
QByteArray writeFileWrapper(const FileWrapper& wrapper, quint32 modified = 0);

/// name as it may be shown and stored: its last path component, without control characters, at
/// most 255 bytes of UTF-8. Empty when nothing is left of it; never "." or "..". Any one thread.
QString sanitisedFileName(const QString& name);

} // namespace tockwise
