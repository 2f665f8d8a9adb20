#include "platform/autostart_login_items.h"

#include "platform/autostart_entry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tockwise {
namespace {

constexpr qint64 kLargest = 65536; // bytes: no entry is that large

QString ownName() {
  return QStringLiteral("com.quillstone.Tockwise.desktop");
}

QStringList environmentList(const char* name, QChar separator, const QString& otherwise = {}) {
  const QString value = qEnvironmentVariable(name);
  return (value.isEmpty() ? otherwise : value).split(separator, Qt::SkipEmptyParts);
}

AutostartEntry readEntry(const QString& path) {
  QFile file(path);
  // Not what would never end, such as a pipe.
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
    return AutostartEntry({});
  return AutostartEntry(file.read(kLargest));
}

Error storageError(const QString& path, const QString& reason) {
  return {Error::Kind::Storage, QStringLiteral("%1: %2").arg(path, reason)};
}

Error storageError(const QString& path) {
  return storageError(path, QString::fromLocal8Bit(std::strerror(errno)));
}

/// A link or a file of that name, whether or not it leads anywhere.
bool isThere(const QString& path) {
  const QFileInfo info(path);
  return info.exists() || info.isSymLink();
}

} // namespace

AutostartLoginItems::AutostartLoginItems(Places places, QString program)
    : m_places(std::move(places)),
      m_program(std::move(program)),
      m_canonical(QFileInfo(m_program).canonicalFilePath()) {}

AutostartLoginItems AutostartLoginItems::ofUser() {
  Places places;
  places.folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                  QStringLiteral("/autostart");
  for (const QString& folder : environmentList("XDG_CONFIG_DIRS", u':', QStringLiteral("/etc/xdg")))
    places.systemFolders += folder + QStringLiteral("/autostart");
  places.commonFolders = {QStringLiteral("/usr/local/bin"), QStringLiteral("/usr/bin"),
                          QStringLiteral("/bin")};
  places.searchPath = environmentList("PATH", u':');
  places.desktops = environmentList("XDG_CURRENT_DESKTOP", u':');
  return {std::move(places), QCoreApplication::applicationFilePath()};
}

/// Of all folders, each name once.
QStringList AutostartLoginItems::entryNames() const {
  QStringList names;
  for (const QString& folder : QStringList(m_places.folder) + m_places.systemFolders) {
    names += QDir(folder).entryList({QStringLiteral("*.desktop")},
                                    QDir::Files | QDir::System | QDir::Hidden);
  }
  names.removeDuplicates();
  return names;
}

/// The user's entry stands for one of the same name of the system.
QString AutostartLoginItems::effectivePath(const QString& name) const {
  for (const QString& folder : QStringList(m_places.folder) + m_places.systemFolders) {
    QString path = folder + u'/' + name;
    if (isThere(path))
      return path;
  }
  return {};
}

QString AutostartLoginItems::findProgram(const QString& word) const {
  if (word.contains(u'/') || word.isEmpty())
    return word;
  return QStandardPaths::findExecutable(word, m_places.searchPath);
}

bool AutostartLoginItems::isOurProgram(const QString& word) const {
  const QString found = findProgram(word);
  return QDir::isAbsolutePath(found) &&
         (found == m_program ||
          (!m_canonical.isEmpty() && QFileInfo(found).canonicalFilePath() == m_canonical));
}

bool AutostartLoginItems::startsUs(const QString& path) const {
  const QStringList command = readEntry(path).command();
  return command.size() == 1 && isOurProgram(command.first());
}

bool AutostartLoginItems::isInEffect(const QString& path) const {
  const AutostartEntry entry = readEntry(path);
  const QString needed = findProgram(entry.tryExec());
  return entry.isStartedOn(m_places.desktops) &&
         (entry.tryExec().isEmpty() || QFileInfo(needed).isExecutable());
}

bool AutostartLoginItems::isPresent() const {
  const QStringList names = entryNames();
  return std::any_of(names.begin(), names.end(), [this](const QString& name) {
    const QString path = effectivePath(name);
    return startsUs(path) && isInEffect(path);
  });
}

Result<void> AutostartLoginItems::add() {
  if (isPresent())
    return {};
  // By its name it is found again wherever a later release is installed.
  const QString name = QFileInfo(m_program).fileName();
  const QString common = QStandardPaths::findExecutable(name, m_places.commonFolders);
  const bool isInstalled =
      !common.isEmpty() && QFileInfo(common).canonicalFilePath() == m_canonical;
  return write(ownName(), autostartEntryFor(isInstalled ? name : m_program));
}

Result<void> AutostartLoginItems::remove() {
  for (const QString& name : entryNames()) {
    const QString own = m_places.folder + u'/' + name;
    // What bears our name is ours, even if it starts a program that has moved since.
    if (isThere(own) && (name == ownName() || startsUs(own)) &&
        ::unlink(QFile::encodeName(own).constData()) != 0)
      return storageError(own);
    const QString systems = effectivePath(name);
    if (!isThere(own) && startsUs(systems) && isInEffect(systems)) {
      if (auto hidden = write(name, hiddenAutostartEntry()); !hidden)
        return hidden;
    }
  }
  return {};
}

// Not through a link: what it leads to belongs to somebody else.
Result<void> AutostartLoginItems::write(const QString& name, const QByteArray& bytes) const {
  const QString path = m_places.folder + u'/' + name;
  if (!QDir().mkpath(m_places.folder))
    return storageError(m_places.folder, QStringLiteral("the folder can't be made"));
  QTemporaryFile file(m_places.folder + QStringLiteral("/.tockwise-XXXXXX"));
  if (!file.open() || file.write(bytes) != bytes.size() || !file.flush() ||
      ::fsync(file.handle()) != 0 ||
      !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                           QFile::ReadOther))
    return storageError(path, file.errorString());
  if (std::rename(QFile::encodeName(file.fileName()).constData(),
                  QFile::encodeName(path).constData()) != 0)
    return storageError(path);
  file.setAutoRemove(false);
  return {};
}

} // namespace tockwise
