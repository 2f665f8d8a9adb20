// Printing the queue and the open alerts: builds the documents, shows the preview, writes PDF.
#pragma once

#include "alerts/alert_windows.h"
#include "base/result.h"
#include "print/print_document.h"
#include "print/print_settings.h"
#include "print/print_window_controller.h"
#include "store/reminder_store.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

namespace tockwise {

/// Main thread. While a preview is open the tick waits and no other window reacts.
class Printing final : public QObject {
  Q_OBJECT
 public:
  using Controllers = std::vector<std::unique_ptr<PrintWindowController>>;

  /// holdTick(true) while a preview is open. The references must outlive the object.
  Printing(const ReminderStore& store, const AlertWindows& alerts, Prompter& prompter,
           std::function<void(bool hold)> holdTick, PrintPanels panels = PrintPanels::ofDesktop(),
           QObject* parent = nullptr);
  ~Printing() override;

  // Each returns when the preview is closed, and at once, with the preview brought to the front,
  // when one is open already.
  /// The preview of the queue, as the display options have it.
  void print();
  /// The preview of the open alerts.
  void printAllCurrentAlerts();

  bool isPreviewOpen() const { return m_open; }
  void bringToFront();

  /// Makes a PDF file of the document that print() or printAllCurrentAlerts() would show, while the
  /// program goes on, and tells what came of it: Refused or Storage when the file can't be written.
  /// Never told when this object goes away first. path: absolute.
  enum class Document { Queue, Alerts };
  void savePDF(Document document, const QString& path, std::function<void(Result<void>)> done);

  /// The preview that was closed last, or null.
  const PrintWindowController* printWindow() const { return m_printWindow; }
  /// Every preview of this run, in the order in which they were closed: a preview joins the list
  /// when its modal run has ended, after its buttons took it off.
  const Controllers& printWindows() const { return m_printWindows; }

 private:
  PrintContents contentsOf(Document document) const;
  void preview(PrintContents contents);
  void willShow(QDialog& window);

  const ReminderStore& m_store;
  const AlertWindows& m_alerts;
  Prompter& m_prompter;
  std::function<void(bool hold)> m_holdTick;
  PrintPanels m_panels;
  PrintSettings m_settings;
  Controllers m_printWindows;
  const PrintWindowController* m_printWindow = nullptr;
  bool m_open = false;
  QPointer<QDialog> m_window; // while it is open
};

/// The document that print() would show, as PDF; Damaged when Qt could not paint. Needs a
/// QGuiApplication, no display. Main thread.
Result<QByteArray> queueAsPDF(const ReminderStore& store);

} // namespace tockwise
