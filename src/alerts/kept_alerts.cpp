#include "alerts/kept_alerts.h"

namespace tockwise {

KeptAlerts::KeptAlerts(AlertWindows& alerts, QString path, QObject* parent)
    : QObject(parent), m_alerts(alerts), m_path(std::move(path)) {}

KeptAlerts::~KeptAlerts() = default;

QString KeptAlerts::pathOfUser() {
  return {};
}

void KeptAlerts::restore() {}

void KeptAlerts::flush() {}

void KeptAlerts::forget() {}

} // namespace tockwise
