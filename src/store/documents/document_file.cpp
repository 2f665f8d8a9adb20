#include "store/documents/document_file.h"

#include "store/file_io.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace tockwise {
namespace {

constexpr mode_t kEverybody = 0666; // the umask takes away from it
constexpr mode_t kPermissions = 0777;
constexpr int kMostNames = 100;

// What is known of the file that will be replaced; nothing when there is none.
using Replaced = std::optional<struct stat>;

Result<Replaced> fileAt(const QString& path) {
  struct stat status = {};
  const QByteArray encoded = QFile::encodeName(path);
  if (::stat(encoded.constData(), &status) != 0) {
    if (errno == ENOENT)
      return Replaced();
    return fileError(path, errno);
  }
  if (S_ISDIR(status.st_mode))
    return Error{Error::Kind::Refused, QStringLiteral("%1 is a folder").arg(path)};
  if (!S_ISREG(status.st_mode))
    return Error{Error::Kind::Refused, QStringLiteral("%1 is no regular file").arg(path)};
  // Moving a file over it needs no right to write it; replacing what is protected would surprise.
  if (::faccessat(AT_FDCWD, encoded.constData(), W_OK, AT_EACCESS) != 0)
    return fileError(path, errno);
  return Replaced(status);
}

struct Temporary {
  Descriptor file;
  QByteArray path;
};

// A new file in target's folder, under a name that nobody has.
Result<Temporary> makeTemporary(const QString& target) {
  const QString folder = QFileInfo(target).path();
  for (int i = 0; i < kMostNames; ++i) {
    const QString name = QStringLiteral("%1/.tockwise-%2.writing")
                             .arg(folder)
                             .arg(QRandomGenerator::global()->generate(), 8, 16, QChar(u'0'));
    Temporary made;
    made.path = QFile::encodeName(name);
    made.file = Descriptor(
        ::open(made.path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kEverybody));
    if (made.file.isOpen())
      return made;
    if (errno != EEXIST)
      break;
  }
  return fileError(target, errno);
}

} // namespace

Result<QByteArray> readDocument(const QString& path) {
  return readRegularFile(path, kLargestDocument);
}

Result<void> writeDocument(const QString& path, const QByteArray& archive) {
  const QString target = targetOf(path);
  const auto replaced = fileAt(target);
  if (!replaced)
    return replaced.error();
  auto temporary = makeTemporary(target);
  if (!temporary)
    return temporary.error();
  if (const Replaced& old = *replaced) {
    // Whose file it is can be kept by the administrator only. The mode is for that owner.
    (void)!::fchown(temporary->file.get(), old->st_uid, old->st_gid);
    (void)::fchmod(temporary->file.get(), old->st_mode & kPermissions);
  }
  return writeAndMove(std::move(temporary->file), temporary->path, target, archive);
}

} // namespace tockwise
