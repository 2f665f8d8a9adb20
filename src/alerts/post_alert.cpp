#include "alerts/post_alert.h"

namespace tockwise {

PostAlert::PostAlert(NotificationCentre& centre, const Clock& clock, QObject* parent)
    : QObject(parent), m_centre(centre), m_clock(clock) {}

void PostAlert::postAlert(const QString&) {}

} // namespace tockwise
