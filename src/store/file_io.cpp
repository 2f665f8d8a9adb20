#include "store/file_io.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tockwise {
namespace {

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

Error tooLarge(const QString& path, qint64 mostBytes) {
  return Error{Error::Kind::Refused,
               QStringLiteral("%1 is larger than %2 MB").arg(path).arg(mostBytes >> 20)};
}

} // namespace

Descriptor::~Descriptor() {
  if (m_descriptor >= 0)
    ::close(m_descriptor);
}

Error fileError(const QString& path, int number) {
  const auto kind = number == ENOENT ? Error::Kind::NotFound : Error::Kind::Storage;
  return Error{kind,
               QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(number)))};
}

Result<QByteArray> readRegularFile(const QString& path, qint64 mostBytes) {
  const Descriptor file(
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file.isOpen())
    return fileError(path, errno);
  struct stat status = {};
  if (::fstat(file.get(), &status) != 0)
    return fileError(path, errno);
  if (!S_ISREG(status.st_mode)) {
    return Error{Error::Kind::Storage, S_ISDIR(status.st_mode)
                                           ? QStringLiteral("%1 is a folder").arg(path)
                                           : QStringLiteral("%1 is no regular file").arg(path)};
  }
  if (status.st_size > mostBytes)
    return tooLarge(path, mostBytes);
  QByteArray bytes;
  bytes.resize(status.st_size);
  qsizetype length = 0;
  for (;;) {
    if (length == bytes.size())
      bytes.resize(length + 4096); // it may grow meanwhile, or not tell its size
    const ssize_t now = ::read(file.get(), bytes.data() + length, size_t(bytes.size() - length));
    if (now < 0 && errno == EINTR)
      continue;
    if (now < 0)
      return fileError(path, errno);
    if (now == 0)
      break;
    length += now;
    if (length > mostBytes)
      return tooLarge(path, mostBytes);
  }
  bytes.resize(length);
  return bytes;
}

QString targetOf(const QString& path) {
  const QFileInfo info(path);
  if (!info.isSymLink())
    return path;
  const QString canonical = info.canonicalFilePath();
  return canonical.isEmpty() ? info.symLinkTarget() : canonical;
}

Result<void> writeAndMove(Descriptor file, const QByteArray& temporary, const QString& target,
                          const QByteArray& bytes) {
  const QByteArray path = QFile::encodeName(target);
  if (!writeAll(file.get(), bytes) || ::fsync(file.get()) != 0 ||
      ::rename(temporary.constData(), path.constData()) != 0) {
    const int number = errno;
    ::unlink(temporary.constData());
    return fileError(target, number);
  }
  const QByteArray folder = QFile::encodeName(QFileInfo(target).path());
  const Descriptor directory(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.isOpen())
    ::fsync(directory.get());
  return {};
}

} // namespace tockwise
