// User notifications through org.freedesktop.Notifications.
#pragma once

#include "base/clock.h"
#include "ports/notification_centre.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>
#include <vector>

class QDBusMessage;
class QDBusPendingCallWatcher;

namespace tockwise {

/// Main thread. Nothing waits for the service: it is reached when the first notification is due,
/// and started then where the desktop starts it on demand. Where there is none, one log line says
/// so until one appears. Texts are shown as they are written, whatever markup the service knows.
class DesktopNotificationCentre final : public NotificationCentre {
  Q_OBJECT
 public:
  using PlaySound = std::function<void()>;

  /// playDefaultSound: services play none, so it is played beside the notification. clock must
  /// outlive the object.
  DesktopNotificationCentre(const Clock& clock, PlaySound playDefaultSound,
                            const QDBusConnection& bus = QDBusConnection::sessionBus(),
                            QObject* parent = nullptr);
  ~DesktopNotificationCentre() override;

  bool isAvailable() const override;
  quint64 schedule(const UserNotification& notification) override;
  /// One that is not shown yet is not shown any more.
  void removeDelivered(quint64 number) override;

 private Q_SLOTS:
  void actionInvoked(uint id, const QString& action);
  void notificationClosed(uint id, uint reason);

 private:
  struct Posted {
    UserNotification notification;
    std::optional<uint> id; // the service's, once it shows it
    bool isSent = false;
    bool isRemoved = false; // while the service is being asked to show it
  };

  void watchService();
  void deliver(quint64 number);
  void askCapabilities();
  void capabilitiesAnswered(QDBusPendingCallWatcher* call);
  void notify(quint64 number);
  void notifyAnswered(quint64 number, QDBusPendingCallWatcher* call);
  void serviceWent();
  void close(uint id);
  void fail(const QString& reason);
  std::optional<quint64> numberOf(uint id) const;
  QDBusMessage notifyCall(const UserNotification& notification) const;

  const Clock& m_clock;
  PlaySound m_playDefaultSound;
  QDBusConnection m_bus;
  QDBusServiceWatcher m_watcher;
  std::map<quint64, Posted> m_posted; // scheduled, being sent, or on the desktop's list
  std::vector<quint64> m_waiting;     // for the capabilities
  std::optional<QStringList> m_capabilities;
  quint64 m_lastNumber = 0;
  bool m_isWatching = false;
  bool m_isAsking = false;
  bool m_failureReported = false;
};

} // namespace tockwise
