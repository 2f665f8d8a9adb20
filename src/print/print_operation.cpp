#include "print/print_operation.h"

#include "base/log.h"
#include "print/print_job.h"

#include <QFileDialog>
#include <QPrintDialog>
#include <QProgressDialog>
#include <QStandardPaths>

namespace tockwise {
namespace {

using namespace std::chrono_literals;

constexpr auto kPrintSlice = 30ms; // of work between two looks at the keyboard
constexpr int kProgressSteps = 1000;
constexpr int kShowAfter = 400; // milliseconds

enum Answer { SaveAsPDF = 0, Cancel = 1 };

bool runPrintDialog(QPrinter& printer, int pageCount, QWidget* window) {
  QPrintDialog dialog(&printer, window);
  dialog.setObjectName(QStringLiteral("printDialog"));
  dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
  dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
  dialog.setMinMax(1, pageCount);
  return dialog.exec() == QDialog::Accepted;
}

QString choosePDFFile(QWidget* window) {
  QFileDialog dialog(window, QStringLiteral("Save as PDF"),
                     QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  dialog.setObjectName(QStringLiteral("savePDFDialog"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilter(QStringLiteral("PDF documents (*.pdf)"));
  dialog.setDefaultSuffix(QStringLiteral("pdf"));
  dialog.selectFile(QStringLiteral("Reminders.pdf"));
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

PrintPanels PrintPanels::ofDesktop() {
  return {tockwise::hasPrinters, runPrintDialog, tockwise::choosePDFFile};
}

PrintOperation::PrintOperation(PrintPages& pages, PrintSettings& settings, Prompter& prompter,
                               const PrintPanels& panels, QWidget* window)
    : m_pages(pages),
      m_settings(settings),
      m_prompter(prompter),
      m_panels(panels),
      m_window(window) {}

void PrintOperation::run() {
  if (!m_panels.hasPrinters()) {
    return offerPDF(QStringLiteral("There is no printer."),
                    QStringLiteral("No printer is set up on this computer, or its print service "
                                   "cannot be reached. You can save the pages as a PDF file and "
                                   "print that elsewhere."));
  }
  QPrinter& printer = m_settings.printer();
  if (m_panels.runDialog(printer, m_pages.pageCount(), m_window))
    printWithProgress(printer);
}

void PrintOperation::printWithProgress(QPrinter& printer) {
  QProgressDialog progress(QStringLiteral("Printing..."), QStringLiteral("Cancel"), 0,
                           kProgressSteps, m_window);
  progress.setObjectName(QStringLiteral("printProgress"));
  progress.setWindowModality(Qt::WindowModal);
  progress.setMinimumDuration(kShowAfter);
  m_pages.setPageLayout(printer.pageLayout());
  if (!completePages(progress))
    return;
  const auto printed = printPages(m_pages, printer, [&progress](double done) {
    progress.setValue(int((1 + done) / 2 * (kProgressSteps - 1)));
    return !progress.wasCanceled();
  });
  progress.reset();
  if (printed)
    return;
  logLine(printed.error().message);
  offerPDF(QStringLiteral("The reminders could not be printed."),
           printed.error().message +
               QStringLiteral(". You can save the pages as a PDF file instead."));
}

bool PrintOperation::completePages(QProgressDialog& progress) {
  while (!m_pages.advance(kPrintSlice)) {
    progress.setValue(int(m_pages.progress() / 2 * kProgressSteps));
    if (progress.wasCanceled())
      return false;
  }
  return true;
}

void PrintOperation::offerPDF(const QString& title, const QString& message) {
  const int answer = m_prompter.ask({title,
                                     message,
                                     {QStringLiteral("Save as PDF..."), QStringLiteral("Cancel")},
                                     SaveAsPDF,
                                     Cancel});
  if (answer != SaveAsPDF)
    return;
  const QString path = m_panels.choosePDFFile(m_window);
  if (path.isEmpty())
    return;
  if (const auto saved = savePDF(path); !saved) {
    logLine(saved.error().message);
    m_prompter.ask(
        messageToRead(QStringLiteral("The PDF file could not be saved."), saved.error().message));
  }
}

Result<void> PrintOperation::savePDF(const QString& path) {
  QProgressDialog progress(QStringLiteral("Saving..."), QStringLiteral("Cancel"), 0, kProgressSteps,
                           m_window);
  progress.setWindowModality(Qt::WindowModal);
  progress.setMinimumDuration(kShowAfter);
  PDFMaking making(m_pages);
  while (!making.advance(kPrintSlice)) {
    progress.setValue(int(making.progress() * (kProgressSteps - 1)));
    if (progress.wasCanceled())
      return {};
  }
  const auto bytes = making.takePDF();
  return bytes ? writeWholeFile(path, *bytes) : Result<void>(bytes.error());
}

} // namespace tockwise
