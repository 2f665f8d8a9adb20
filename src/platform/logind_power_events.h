// Sleep and wake from systemd-logind.
//
// A delay inhibitor holds the machine back until the receivers of willSleep() have returned. It is
// asked for without waiting, at start and after each wake, and again when logind comes (back).
#pragma once

#include "ports/power_events.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>

namespace tockwise {

/// Main thread.
class LogindPowerEvents final : public PowerEvents {
  Q_OBJECT
 public:
  /// bus: the system bus; a connection that is not connected makes an object that never signals.
  explicit LogindPowerEvents(const QDBusConnection& bus = QDBusConnection::systemBus(),
                             QObject* parent = nullptr);
  ~LogindPowerEvents() override;

  /// Whether logind has answered. False at first, since nothing waits for its answer.
  bool isAvailable() const override { return m_available; }
  /// Whether the machine is being held back from sleeping.
  bool holdsInhibitor() const { return m_inhibitor.isValid(); }

 private Q_SLOTS:
  void prepareForSleep(bool sleeping);

 private:
  void takeInhibitor();
  void releaseInhibitor();
  void inhibitorAnswered(QDBusPendingCallWatcher* call);
  void logindWent();

  QDBusConnection m_bus;
  QDBusServiceWatcher m_watcher;
  QDBusUnixFileDescriptor m_inhibitor;
  QDBusPendingCallWatcher* m_pending = nullptr; // the newest call; answers to others are dropped
  bool m_available = false;
  bool m_sleeping = false;
  bool m_refusalReported = false;
};

} // namespace tockwise
