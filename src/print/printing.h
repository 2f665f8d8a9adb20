// Printing the queue and the open alerts: builds the document, shows the preview, writes PDF.
#pragma once

#include "alerts/alert_windows.h"
#include "base/result.h"
#include "print/print_document.h"
#include "store/reminder_store.h"

#include <QByteArray>
#include <QObject>

#include <functional>

namespace tockwise {

/// Main thread. While a preview is open the tick waits and no other window reacts.
class Printing final : public QObject {
  Q_OBJECT
 public:
  /// holdTick(true) while a preview is open. The references must outlive the object.
  Printing(const ReminderStore& store, const AlertWindows& alerts,
           std::function<void(bool hold)> holdTick, QObject* parent = nullptr);
  ~Printing() override;

  /// The preview of the queue, as the display options have it.
  void print();
  /// The preview of the open alerts.
  void printAllCurrentAlerts();

 private:
  const ReminderStore& m_store;
  const AlertWindows& m_alerts;
  std::function<void(bool hold)> m_holdTick;
};

/// The document that print() would show, as PDF. Needs a QGuiApplication, no display.
Result<QByteArray> queueAsPDF(const ReminderStore& store);
/// The document that printAllCurrentAlerts() would show, as PDF.
Result<QByteArray> alertsAsPDF(const AlertWindows& alerts);

} // namespace tockwise
