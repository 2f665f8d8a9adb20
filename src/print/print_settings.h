// What the user chose for the last print, kept for the next one while the program runs.
#pragma once

#include <QPageLayout>
#include <QPrinter>

#include <memory>

namespace tockwise {

/// Main thread.
class PrintSettings {
 public:
  /// The paper that would be printed on: the one that was chosen last, else that of the default
  /// printer, else the usual one of the user's locale.
  QPageLayout paper() const;

  /// The printer with what was chosen last; the first time the default one. What belongs to one
  /// job only (copies, pages, the file's name) starts afresh at each call.
  QPrinter& printer();

 private:
  std::unique_ptr<QPrinter> m_printer; // made when it is first printed
};

/// Whether there is any printer to print on. Waits for the print service. Main thread.
bool hasPrinters();

} // namespace tockwise
