#include "platform/time/zone_watch.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace tockwise {
namespace {

const QString kFiles[] = {QStringLiteral("localtime"), QStringLiteral("timezone")};

} // namespace

ZoneWatch::ZoneWatch(const QString& folder, QObject* parent)
    : QObject(parent), m_folder(folder), m_state(state()) {
  connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &ZoneWatch::look);
  connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &ZoneWatch::look);
  m_watcher.addPath(m_folder);
  look();
}

/// The two files' identities and times. A link counts as itself, not as the zone it leads to.
QByteArray ZoneWatch::state() const {
  QByteArray result;
  for (const QString& name : kFiles) {
    struct stat info {};
    if (::lstat(QFile::encodeName(QDir(m_folder).filePath(name)).constData(), &info) != 0)
      continue;
    for (const qint64 part : {qint64(info.st_dev), qint64(info.st_ino), qint64(info.st_mtim.tv_sec),
                              qint64(info.st_mtim.tv_nsec)})
      result += QByteArray::number(part) + ' ';
  }
  return result;
}

void ZoneWatch::look() {
  // A file written in place changes without its folder; one that was replaced is watched anew.
  for (const QString& name : kFiles) {
    const QString path = QDir(m_folder).filePath(name);
    if (QFile::exists(path) && !m_watcher.files().contains(path))
      m_watcher.addPath(path);
  }
  if (QByteArray now = state(); now != m_state) {
    m_state = std::move(now);
    Q_EMIT zoneChanged();
  }
}

} // namespace tockwise
