#include "store/store_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace tockwise {
namespace {

// A descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
  ~Descriptor() {
    if (m_descriptor >= 0)
      ::close(m_descriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return m_descriptor; }
  bool isOpen() const { return m_descriptor >= 0; }

 private:
  int m_descriptor;
};

Error storageError(const QString& path, int number) {
  const auto kind = number == ENOENT ? Error::Kind::NotFound : Error::Kind::Storage;
  return Error{kind,
               QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(number)))};
}

bool writeAll(int descriptor, const QByteArray& bytes) {
  qsizetype written = 0;
  while (written < bytes.size()) {
    const ssize_t now =
        ::write(descriptor, bytes.constData() + written, size_t(bytes.size() - written));
    if (now < 0 && errno == EINTR)
      continue;
    if (now <= 0)
      return false;
    written += now;
  }
  return true;
}

QString targetOf(const QString& path) {
  const QFileInfo info(path);
  if (!info.isSymLink())
    return path;
  const QString canonical = info.canonicalFilePath();
  return canonical.isEmpty() ? info.symLinkTarget() : canonical;
}

} // namespace

std::optional<FileIdentity> identityOf(const QByteArray& encodedPath) {
  struct stat status = {};
  if (::stat(encodedPath.constData(), &status) != 0)
    return std::nullopt;
  return FileIdentity{quint64(status.st_dev), quint64(status.st_ino), qint64(status.st_size),
                      qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec};
}

Result<QByteArray> readWholeFile(const QString& path) {
  const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen())
    return storageError(path, errno);
  struct stat status = {};
  if (::fstat(file.get(), &status) != 0)
    return storageError(path, errno);
  if (!S_ISREG(status.st_mode))
    return Error{Error::Kind::Storage, QStringLiteral("%1 is no file").arg(path)};
  QByteArray bytes;
  bytes.resize(status.st_size);
  qsizetype length = 0;
  for (;;) {
    if (length == bytes.size())
      bytes.resize(length + 4096);
    const ssize_t now = ::read(file.get(), bytes.data() + length, size_t(bytes.size() - length));
    if (now < 0 && errno == EINTR)
      continue;
    if (now < 0)
      return storageError(path, errno);
    if (now == 0)
      break;
    length += now;
  }
  bytes.resize(length);
  return bytes;
}

Result<void> writeAtomically(const QString& path, const QByteArray& bytes) {
  const QString target = targetOf(path);
  const QByteArray folder = QFile::encodeName(QFileInfo(target).path());
  const QByteArray temporary = QFile::encodeName(target) + ".writing";
  {
    // One writer holds the lock, so a file of this name is what a killed one left behind.
    const Descriptor file(
        ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen())
      return storageError(target, errno);
    if (::fchmod(file.get(), 0600) != 0 || !writeAll(file.get(), bytes) ||
        ::fsync(file.get()) != 0) {
      const int number = errno;
      ::unlink(temporary.constData());
      return storageError(target, number);
    }
  }
  if (::rename(temporary.constData(), QFile::encodeName(target).constData()) != 0) {
    const int number = errno;
    ::unlink(temporary.constData());
    return storageError(target, number);
  }
  const Descriptor directory(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.isOpen())
    ::fsync(directory.get());
  return {};
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
    return Error{Error::Kind::Storage, storageError(path, errno).message};
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
    return Error{Error::Kind::Storage, storageError(path, errno).message};
  if (::flock(lock.m_descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK)
      return Error{Error::Kind::Busy, QStringLiteral("%1 is held by another process").arg(path)};
    return Error{Error::Kind::Storage, storageError(path, errno).message};
  }
  return lock;
}

} // namespace tockwise
