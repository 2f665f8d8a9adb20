#include "store/store_file.h"

#include "store/file_io.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace tockwise {
std::optional<FileIdentity> identityOf(const QByteArray& encodedPath) {
  struct stat status = {};
  if (::stat(encodedPath.constData(), &status) != 0)
    return std::nullopt;
  return FileIdentity{quint64(status.st_dev), quint64(status.st_ino), qint64(status.st_size),
                      qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec};
}

Result<QByteArray> readWholeFile(const QString& path) {
  return readRegularFile(path);
}

Result<void> writeAtomically(const QString& path, const QByteArray& bytes) {
  const QString target = targetOf(path);
  // One writer holds the lock, so a file of this name is what a killed one left behind.
  const QByteArray temporary = QFile::encodeName(target) + ".writing";
  Descriptor file(
      ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file.isOpen())
    return fileError(target, errno);
  if (::fchmod(file.get(), 0600) != 0) {
    const int number = errno;
    ::unlink(temporary.constData());
    return fileError(target, number);
  }
  return writeAndMove(std::move(file), temporary, target, bytes);
}

std::optional<QString> putAside(const QString& path, const QString& suffix) {
  QString name = path + suffix;
  for (int i = 1; QFileInfo::exists(name); ++i)
    name = QStringLiteral("%1%2-%3").arg(path, suffix).arg(i);
  return QFile::rename(path, name) ? std::optional(name) : std::nullopt;
}

Result<void> makePrivateFolder(const QString& path) {
  if (QFileInfo(path).isDir()) {
    ::chmod(QFile::encodeName(path).constData(), 0700); // somebody else's folder stays as it is
    return {};
  }
  const QString parent = QFileInfo(path).path();
  if (parent != path && !QFileInfo(parent).isDir()) {
    if (auto made = makePrivateFolder(parent); !made)
      return made;
  }
  if (::mkdir(QFile::encodeName(path).constData(), 0700) != 0 && errno != EEXIST)
    return Error{Error::Kind::Storage, fileError(path, errno).message};
  if (!QFileInfo(path).isDir())
    return Error{Error::Kind::Storage, QStringLiteral("%1 is no folder").arg(path)};
  return {};
}

FileLock::~FileLock() {
  if (m_descriptor >= 0)
    ::close(m_descriptor);
}

FileLock::FileLock(FileLock&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
  std::swap(m_descriptor, other.m_descriptor);
  return *this;
}

Result<FileLock> FileLock::take(const QString& path) {
  FileLock lock;
  lock.m_descriptor =
      ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (lock.m_descriptor < 0)
    return Error{Error::Kind::Storage, fileError(path, errno).message};
  if (::flock(lock.m_descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK)
      return Error{Error::Kind::Busy, QStringLiteral("%1 is held by another process").arg(path)};
    return Error{Error::Kind::Storage, fileError(path, errno).message};
  }
  return lock;
}

} // namespace tockwise
