#include "app/store_watch.h"

#include <QFileInfo>

namespace tockwise {

StoreWatch::StoreWatch(const QString& file, QObject* parent) : QObject(parent) {
  connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &StoreWatch::changed);
  connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this, file] {
    m_watcher.addPath(file); // a replaced file is no longer watched
    Q_EMIT changed();
  });
  m_watcher.addPath(QFileInfo(file).path());
  m_watcher.addPath(file);
}

} // namespace tockwise
