#include "print/printing.h"

#include "print/print_job.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>

namespace tockwise {
namespace {

using namespace std::chrono_literals;

constexpr auto kSlice = 15ms; // of work beside the program

PrintContents contentsOfQueue(const ReminderStore& store) {
  const bool isRich = store.preferences().boolean(QStringLiteral("showRichText"));
  return {isRich ? PrintForm::Rich : PrintForm::Plain, WithoutRichText::PlainText,
          entriesOfQueue(store.queue())};
}

/// Always rich, and without plain text where the rich one is missing: unlike the queue, an alert
/// prints what its window was given.
PrintContents contentsOfAlerts(const AlertWindows& alerts) {
  PrintContents contents{PrintForm::Rich, WithoutRichText::Nothing, {}};
  for (const AlertEntry& alert : alerts.entries())
    contents.entries.push_back({alert.date, alert.text, alert.RTFData});
  return contents;
}

/// A PDF file in the making, bit by bit on the event loop. Goes away when it is done.
class SavingPDF final : public QObject {
 public:
  SavingPDF(PrintContents contents, const QPageLayout& paper, QString path,
            std::function<void(Result<void>)> done, QObject* parent)
      : QObject(parent),
        m_pages(std::make_unique<PrintPages>(std::move(contents), paper)),
        m_making(std::make_unique<PDFMaking>(*m_pages)),
        m_path(std::move(path)),
        m_done(std::move(done)) {
    m_slice.callOnTimeout(this, &SavingPDF::goOn);
    m_slice.start();
  }

 private:
  void goOn() {
    if (!m_making->advance(kSlice))
      return;
    m_slice.stop();
    const auto bytes = m_making->takePDF();
    m_making.reset();
    m_pages.reset();
    giveMemoryBack();
    m_done(bytes ? writeWholeFile(m_path, *bytes) : Result<void>(bytes.error()));
    deleteLater();
  }

  std::unique_ptr<PrintPages> m_pages;
  std::unique_ptr<PDFMaking> m_making;
  QString m_path;
  std::function<void(Result<void>)> m_done;
  QTimer m_slice;
};

} // namespace

Printing::Printing(const ReminderStore& store, const AlertWindows& alerts, Prompter& prompter,
                   std::function<void(bool hold)> holdTick, PrintPanels panels, QObject* parent)
    : QObject(parent),
      m_store(store),
      m_alerts(alerts),
      m_prompter(prompter),
      m_holdTick(std::move(holdTick)),
      m_panels(std::move(panels)) {}

Printing::~Printing() = default;

void Printing::print() {
  preview(contentsOf(Document::Queue));
}

void Printing::printAllCurrentAlerts() {
  preview(contentsOf(Document::Alerts));
}

PrintContents Printing::contentsOf(Document document) const {
  return document == Document::Queue ? contentsOfQueue(m_store) : contentsOfAlerts(m_alerts);
}

void Printing::preview(PrintContents contents) {
  if (m_open)
    return bringToFront();
  m_open = true;
  m_holdTick(true);
  const auto remove = [this](const PrintWindowController* closed) {
    std::erase_if(m_printWindows, [closed](const auto& each) { return each.get() == closed; });
  };
  auto controller = std::make_unique<PrintWindowController>(
      std::move(contents),
      PrintSurroundings{m_settings, m_prompter, m_panels,
                        [this](QDialog& window) { willShow(window); }, remove});
  // Here, after the buttons have taken it off a list that it was not on.
  m_printWindows.push_back(std::move(controller));
  m_printWindow = m_printWindows.back().get();
  m_open = false;
  m_holdTick(false);
}

void Printing::willShow(QDialog& window) {
  m_window = &window;
  // Alerts and questions float above other windows. They do not react while this one is open, so
  // they must not cover it either.
  const QWidgetList windows = QApplication::topLevelWidgets();
  if (std::any_of(windows.begin(), windows.end(), [](const QWidget* each) {
        return each->isVisible() && each->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
      }))
    window.setWindowFlag(Qt::WindowStaysOnTopHint);
}

void Printing::bringToFront() {
  if (!m_window)
    return;
  m_window->raise();
  m_window->activateWindow();
}

void Printing::savePDF(Document document, const QString& path,
                       std::function<void(Result<void>)> done) {
  new SavingPDF(contentsOf(document), m_settings.paper(), path, std::move(done), this);
}

Result<QByteArray> queueAsPDF(const ReminderStore& store) {
  PrintPages pages(contentsOfQueue(store), PrintSettings().paper());
  PDFMaking making(pages);
  while (!making.advance(1h)) {
  }
  return making.takePDF();
}

} // namespace tockwise
