// The file work of the preferences store: reading, writing atomically, locking. Any thread.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tockwise {

/// Tells one state of a file from another.
struct FileIdentity {
  quint64 device = 0;
  quint64 inode = 0;
  qint64 size = 0;
  qint64 modified = 0; // nanoseconds since 1970
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// Nothing when there is no such file. Allocates nothing.
std::optional<FileIdentity> identityOf(const QByteArray& encodedPath);

/// NotFound when there is none, Storage when it cannot be read.
Result<QByteArray> readWholeFile(const QString& path);

/// Replaces the file at path (the target, when it is a link): a temporary file in the same folder,
/// fsync, rename, fsync of the folder; mode 0600. One writer at a time. A failure (NotFound where
/// the folder is missing, else Storage) leaves the old file whole.
Result<void> writeAtomically(const QString& path, const QByteArray& bytes);

/// Renames a file that cannot be used, so that it is kept and out of the way: suffix (".damaged")
/// is added to its name, and a number where that is taken. Its new name, or nothing when it could
/// not be moved.
std::optional<QString> putAside(const QString& path, const QString& suffix);

/// Makes the folder, and what is above it, with mode 0700. A folder that is there is given that
/// mode; what is above it keeps its own. Storage when that fails.
Result<void> makePrivateFolder(const QString& path);

/// An exclusive lock that dies with its holder.
class FileLock {
 public:
  FileLock() = default;
  ~FileLock();
  FileLock(FileLock&& other) noexcept;
  FileLock& operator=(FileLock&& other) noexcept;

  /// Busy when another process has it.
  static Result<FileLock> take(const QString& path);

 private:
  int m_descriptor = -1;
};

} // namespace tockwise
