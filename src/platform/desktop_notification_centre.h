// User notifications through org.freedesktop.Notifications.
#pragma once

#include "ports/notification_centre.h"
#include "ports/sound_player.h"

namespace tockwise {

class DesktopNotificationCentre final : public NotificationCentre {
  Q_OBJECT
 public:
  explicit DesktopNotificationCentre(QObject* parent = nullptr);
  ~DesktopNotificationCentre() override;

  bool isAvailable() const override;
  quint64 schedule(const UserNotification& notification) override;
  void removeDelivered(quint64 number) override;
};

} // namespace tockwise
