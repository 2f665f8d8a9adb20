#include "print/print_settings.h"

#include "print/paper.h"

#include <QPrinterInfo>

namespace tockwise {

QPageLayout PrintSettings::paper() const {
  if (m_printer)
    return m_printer->pageLayout();
  const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
  const QPageSize size = printer.isNull() ? QPageSize() : printer.defaultPageSize();
  return paperOfSize(size.isValid() ? size : paperSizeOfUser());
}

QPrinter& PrintSettings::printer() {
  if (!m_printer) {
    const QPageLayout layout = paper();
    m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    m_printer->setPageLayout(layout);
    m_printer->setCreator(QStringLiteral("Tockwise"));
  }
  m_printer->setDocName(QStringLiteral("Reminders"));
  m_printer->setFullPage(true); // the document has the margins
  m_printer->setCopyCount(1);
  m_printer->setPrintRange(QPrinter::AllPages);
  m_printer->setPageRanges({});
  return *m_printer;
}

bool hasPrinters() {
  return !QPrinterInfo::availablePrinterNames().isEmpty();
}

} // namespace tockwise
