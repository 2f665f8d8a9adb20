#include "app/store_watch.h"

#include <QFileInfo>

namespace tockwise {
namespace {
constexpr std::chrono::milliseconds kRest{2500};
}

StoreWatch::StoreWatch(const QString& file, QObject* parent) : QObject(parent) {
  // A file that is still being written is looked at again when it has come to rest.
  m_again.setSingleShot(true);
  m_again.setInterval(kRest);
  connect(&m_again, &QTimer::timeout, this, &StoreWatch::changed);
  connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
    m_again.start();
    Q_EMIT changed();
  });
  connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this, file] {
    m_watcher.addPath(file); // a replaced file is no longer watched
    m_again.start();
    Q_EMIT changed();
  });
  m_watcher.addPath(QFileInfo(file).path());
  m_watcher.addPath(file);
}

} // namespace tockwise
