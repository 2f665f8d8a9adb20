// Notices that the system's time zone was changed.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace tockwise {

/// The zone is changed by replacing the file or link /etc/localtime (and, where it is a copy,
/// /etc/timezone), so this watches their folder. Main thread.
class ZoneWatch final : public QObject {
  Q_OBJECT
 public:
  explicit ZoneWatch(const QString& folder = QStringLiteral("/etc"), QObject* parent = nullptr);

 Q_SIGNALS:
  void zoneChanged();

 private:
  QByteArray state() const;
  void look();

  QString m_folder;
  QByteArray m_state;
  QFileSystemWatcher m_watcher;
};

} // namespace tockwise
