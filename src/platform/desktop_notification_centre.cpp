#include "platform/desktop_notification_centre.h"

namespace tockwise {

DesktopNotificationCentre::DesktopNotificationCentre(QObject* parent)
    : NotificationCentre(parent) {}

DesktopNotificationCentre::~DesktopNotificationCentre() = default;

bool DesktopNotificationCentre::isAvailable() const {
  return false;
}

quint64 DesktopNotificationCentre::schedule(const UserNotification&) {
  return 0;
}

void DesktopNotificationCentre::removeDelivered(quint64) {}

} // namespace tockwise
