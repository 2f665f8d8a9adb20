#include "print/print_job.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSaveFile>

#include <algorithm>
#include <vector>

namespace tockwise {
namespace {

/// The pages, counted from 0, in the order in which they leave the printer.
std::vector<int> pagesToPrint(int count, const QPrinter& printer) {
  const QPageRanges ranges = printer.pageRanges();
  std::vector<int> chosen;
  for (int page = 0; page < count; ++page) {
    if (ranges.isEmpty() || ranges.contains(page + 1))
      chosen.push_back(page);
  }
  if (printer.pageOrder() == QPrinter::LastPageFirst)
    std::reverse(chosen.begin(), chosen.end());
  if (printer.supportsMultipleCopies())
    return chosen;
  // A file holds as many as the printer would be asked for.
  std::vector<int> all;
  const size_t copies = size_t(std::max(1, printer.copyCount()));
  for (size_t i = 0; i < chosen.size() * copies; ++i)
    all.push_back(chosen[printer.collateCopies() ? i % chosen.size() : i / copies]);
  return all;
}

Error refusedByPrinter(const QPrinter& printer) {
  if (printer.outputFormat() == QPrinter::PdfFormat) {
    return {Error::Kind::Unavailable,
            QStringLiteral("%1 cannot be written").arg(printer.outputFileName())};
  }
  return {Error::Kind::Unavailable,
          QStringLiteral("The printer %1 did not take the job").arg(printer.printerName())};
}

/// Qt doesn't tell when the file of a job finds no room on the disk.
bool isWholeFile(const QPrinter& printer) {
  if (!QFileInfo(printer.outputFileName()).isFile())
    return true;              // a pipe, or a device: it is not read again
  constexpr qint64 kEnd = 16; // bytes, of which the end mark and line ends take less
  QFile file(printer.outputFileName());
  return file.open(QIODevice::ReadOnly) && file.seek(std::max<qint64>(0, file.size() - kEnd)) &&
         file.readAll().contains("%%EOF");
}

void paintScaled(QPainter& painter, const PrintPages& pages, int page, double resolution) {
  painter.save();
  painter.scale(resolution / kPaperResolution, resolution / kPaperResolution);
  pages.paint(painter, page);
  painter.restore();
}

} // namespace

Result<PrintOutcome> printPages(const PrintPages& pages, QPrinter& printer,
                                const PrintProgress& progress) {
  QPainter painter;
  if (!painter.begin(&printer))
    return refusedByPrinter(printer);
  const std::vector<int> chosen = pagesToPrint(pages.pageCount(), printer);
  for (size_t i = 0; i < chosen.size(); ++i) {
    if (!progress(double(i) / double(chosen.size()))) {
      printer.abort();
      return PrintOutcome::Cancelled;
    }
    if (i > 0 && !printer.newPage())
      return refusedByPrinter(printer);
    paintScaled(painter, pages, chosen[i], printer.resolution());
  }
  const bool ended = painter.end();
  const bool failed =
      printer.printerState() == QPrinter::Error || printer.printerState() == QPrinter::Aborted;
  const bool isCut = printer.outputFormat() == QPrinter::PdfFormat && !isWholeFile(printer);
  if (!ended || failed || isCut)
    return refusedByPrinter(printer);
  return PrintOutcome::Printed;
}

class PDFMaking::Writer {
 public:
  explicit Writer(const PrintPages& pages) : m_pages(pages) {
    m_buffer.open(QIODevice::WriteOnly);
    m_writer.setTitle(QStringLiteral("Reminders"));
    m_writer.setCreator(QStringLiteral("Tockwise"));
    QPageLayout layout = pages.pageLayout();
    layout.setMode(QPageLayout::FullPageMode); // the document has the margins
    m_writer.setPageLayout(layout);
    m_isWhole = m_painter.begin(&m_writer);
  }

  /// Paints the next page; true when there is none.
  bool paintNext() {
    if (!m_isWhole || m_next >= m_pages.pageCount())
      return true;
    if (m_next > 0)
      m_isWhole = m_writer.newPage();
    if (m_isWhole)
      paintScaled(m_painter, m_pages, m_next++, m_writer.resolution());
    return false;
  }

  int painted() const { return m_next; }

  std::optional<QByteArray> finish() {
    m_isWhole = m_painter.end() && m_isWhole;
    if (!m_isWhole)
      return std::nullopt;
    return m_buffer.data();
  }

 private:
  const PrintPages& m_pages;
  QBuffer m_buffer;
  QPdfWriter m_writer{&m_buffer};
  QPainter m_painter;
  int m_next = 0;
  bool m_isWhole = false;
};

PDFMaking::PDFMaking(PrintPages& pages) : m_pages(pages) {}

PDFMaking::~PDFMaking() = default;

bool PDFMaking::advance(std::chrono::milliseconds span) {
  QElapsedTimer spent;
  spent.start();
  if (!m_pages.advance(span))
    return false;
  if (!m_writer)
    m_writer = std::make_unique<Writer>(m_pages);
  bool isDone = false;
  while (!isDone && !spent.hasExpired(span.count()))
    isDone = m_writer->paintNext();
  return isDone;
}

double PDFMaking::progress() const {
  if (!m_writer)
    return m_pages.progress() / 2;
  return 0.5 + 0.5 * m_writer->painted() / std::max(1, m_pages.pageCount());
}

Result<QByteArray> PDFMaking::takePDF() {
  if (auto bytes = m_writer->finish())
    return std::move(*bytes);
  return Error{Error::Kind::Damaged, QStringLiteral("the pages cannot be written as PDF")};
}

Result<void> writeWholeFile(const QString& path, const QByteArray& contents) {
  const QFileInfo present(path);
  if (present.exists() && !present.isFile()) {
    return Error{Error::Kind::Refused, present.isDir()
                                           ? QStringLiteral("%1 is a folder").arg(path)
                                           : QStringLiteral("%1 is no ordinary file").arg(path)};
  }
  QSaveFile file(path);
  // flush(): commit() does not notice when what waits in the buffer finds no room on the disk.
  if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() ||
      !file.flush() || !file.commit()) {
    return Error{Error::Kind::Storage,
                 QStringLiteral("%1 cannot be written: %2").arg(path, file.errorString())};
  }
  return {};
}

} // namespace tockwise
