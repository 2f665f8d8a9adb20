// One run of the desktop's print dialog and what comes of it.
#pragma once

#include "ports/prompter.h"
#include "print/print_pages.h"
#include "print/print_settings.h"

#include <QString>

#include <functional>

class QProgressDialog;
class QWidget;

namespace tockwise {

/// The desktop's part in printing.
struct PrintPanels {
  std::function<bool()> hasPrinters;
  /// Lets the user set the printer for so many pages; false: cancelled.
  std::function<bool(QPrinter& printer, int pageCount, QWidget* window)> runDialog;
  /// Lets the user choose the file of a PDF document; empty: cancelled.
  std::function<QString(QWidget* window)> choosePDFFile;

  static PrintPanels ofDesktop();
};

/// Main thread. Runs event loops of its own; what is given must outlive it.
class PrintOperation {
 public:
  PrintOperation(PrintPages& pages, PrintSettings& settings, Prompter& prompter,
                 const PrintPanels& panels, QWidget* window);

  /// Asks how to print, prints, and shows what takes long, with a way to end it. Where nothing can
  /// be printed on, says so and offers a PDF file instead.
  void run();

 private:
  void printWithProgress(QPrinter& printer);
  /// Lays out on the chosen paper; false when the user ends it.
  bool completePages(QProgressDialog& progress);
  void offerPDF(const QString& title, const QString& message);
  Result<void> savePDF(const QString& path);

  PrintPages& m_pages;
  PrintSettings& m_settings;
  Prompter& m_prompter;
  const PrintPanels& m_panels;
  QWidget* m_window;
};

} // namespace tockwise
