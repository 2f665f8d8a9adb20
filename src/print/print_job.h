// Pages on their way to a printer or into a PDF file.
#pragma once

#include "base/result.h"
#include "print/print_pages.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

class QPrinter;

namespace tockwise {

/// Called now and then with how much is done, from 0 to 1; false ends the work.
using PrintProgress = std::function<bool(double done)>;

enum class PrintOutcome { Printed, Cancelled };

/// Prints complete pages as the printer is set: its range of pages, order and copies. Unavailable
/// when it takes no job or gives it up. Main thread.
Result<PrintOutcome> printPages(const PrintPages& pages, QPrinter& printer,
                                const PrintProgress& progress);

/// Pages written as PDF bit by bit, their texts as text. Main thread; needs a QGuiApplication, no
/// display.
class PDFMaking {
 public:
  /// pages must outlive it.
  explicit PDFMaking(PrintPages& pages);
  ~PDFMaking();

  /// Goes on for about that long; true when it is done. Ready for takePDF() then.
  bool advance(std::chrono::milliseconds span);
  double progress() const;
  /// Damaged when Qt could not paint.
  Result<QByteArray> takePDF();

 private:
  class Writer;
  PrintPages& m_pages;
  std::unique_ptr<Writer> m_writer; // once the pages are complete
};

/// Writes a file as a whole or not at all: what stood under that name stays until everything is on
/// the disk. path: absolute; a link is followed. Storage, with the path and the reason, when it
/// can't be written; Refused when that is a folder or a device. Any thread.
Result<void> writeWholeFile(const QString& path, const QByteArray& contents);

} // namespace tockwise
