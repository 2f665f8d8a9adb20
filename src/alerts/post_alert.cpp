#include "alerts/post_alert.h"

namespace tockwise {
namespace {

constexpr double kDelay = 1.0; // seconds

} // namespace

PostAlert::PostAlert(NotificationCentre& centre, const Clock& clock, QObject* parent)
    : QObject(parent), m_centre(centre), m_clock(clock) {
  connect(&m_centre, &NotificationCentre::didActivate, &m_centre,
          &NotificationCentre::removeDelivered);
}

void PostAlert::postAlert(const QString& text) {
  UserNotification notification;
  notification.title = QStringLiteral("Ftech Successful"); // spelled so wherever it is shown
  notification.informativeText = text;
  notification.deliveryDate = m_clock.now().plusSeconds(kDelay);
  notification.defaultSound = true;
  m_centre.schedule(notification);
}

} // namespace tockwise
