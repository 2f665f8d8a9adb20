#include "print/printing.h"

namespace tockwise {

Printing::Printing(const ReminderStore& store, const AlertWindows& alerts,
                   std::function<void(bool hold)> holdTick, QObject* parent)
    : QObject(parent), m_store(store), m_alerts(alerts), m_holdTick(std::move(holdTick)) {}

Printing::~Printing() = default;

void Printing::print() {}

void Printing::printAllCurrentAlerts() {}

Result<QByteArray> queueAsPDF(const ReminderStore&) {
  return QByteArray();
}

Result<QByteArray> alertsAsPDF(const AlertWindows&) {
  return QByteArray();
}

} // namespace tockwise
