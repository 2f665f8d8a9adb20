// Alerts outlive the program: those that were open when it was killed or the session ended come
// back at the next start. A one-time reminder that was saved as fired does not fire again, so
// nobody would be told a second time.
#pragma once

#include "alerts/alert_windows.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace tockwise {

/// Keeps a file of the open alerts up to date, as long as it lives. Main thread.
class KeptAlerts final : public QObject {
  Q_OBJECT
 public:
  /// path: the file; alerts must outlive the object.
  KeptAlerts(AlertWindows& alerts, QString path, QObject* parent = nullptr);
  /// Writes what is due.
  ~KeptAlerts() override;

  /// …/tockwise/alerts.plist below XDG_STATE_HOME.
  static QString pathOfUser();

  /// Opens the alerts of the file again, without a sound, oldest first; a damaged file is put
  /// aside and logged. Call once, at the start.
  void restore();
  /// Writes now what is due to be written. A failure is logged once, and what is due stays due.
  void flush();
  /// The user chose to quit although alerts were open: they do not come back, and nothing is
  /// written from now on.
  void forget();

 private:
  void note();
  void putAsideDamaged(const QString& reason);
  Result<void> write(const std::vector<AlertState>& states) const;

  AlertWindows& m_alerts;
  QString m_path;
  QTimer m_writeSoon;
  std::vector<AlertState> m_written; // what the file holds
  bool m_isDue = false;
  bool m_failed = false;
  bool m_forgotten = false;
};

} // namespace tockwise
