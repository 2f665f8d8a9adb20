// Notices that another process changed the store's file.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace tockwise {

/// Main thread. The file is replaced by renaming, so its folder is watched.
class StoreWatch final : public QObject {
  Q_OBJECT
 public:
  explicit StoreWatch(const QString& file, QObject* parent = nullptr);

 Q_SIGNALS:
  /// The file or its folder changed; our own writing counts too.
  void changed();

 private:
  QFileSystemWatcher m_watcher;
  QTimer m_again;
};

} // namespace tockwise
