// Alerts outlive the program: those that were open when it was killed or the session ended come
// back at the next start.
#pragma once

#include "alerts/alert_windows.h"

#include <QObject>
#include <QString>

namespace tockwise {

/// Keeps a file of the open alerts up to date. Main thread.
class KeptAlerts final : public QObject {
  Q_OBJECT
 public:
  /// path: the file; alerts must outlive the object.
  KeptAlerts(AlertWindows& alerts, QString path, QObject* parent = nullptr);
  ~KeptAlerts() override;

  /// …/state/tockwise/alerts
  static QString pathOfUser();

  /// Opens the alerts of the file again, without a sound, oldest first; a damaged file is put
  /// aside and logged. Call once, at the start.
  void restore();
  /// Writes now what is due to be written.
  void flush();
  /// The user chose to quit although alerts were open: they do not come back.
  void forget();

 private:
  AlertWindows& m_alerts;
  QString m_path;
};

} // namespace tockwise
