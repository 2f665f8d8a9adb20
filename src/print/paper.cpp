#include "print/paper.h"

#include <unicode/ulocdata.h>

namespace tockwise {

QPageSize paperSizeOfLocale(const QString& locale) {
  int32_t height = 0; // millimetres
  int32_t width = 0;
  UErrorCode status = U_ZERO_ERROR;
  ulocdata_getPaperSize(locale.toLatin1().constData(), &height, &width, &status);
  constexpr int32_t kHeightOfLetter = 279;
  return QPageSize(U_SUCCESS(status) && height == kHeightOfLetter ? QPageSize::Letter
                                                                  : QPageSize::A4);
}

QPageSize paperSizeOfUser() {
  for (const char* variable : {"LC_ALL", "LC_PAPER", "LANG"}) {
    const QString locale = qEnvironmentVariable(variable);
    if (!locale.isEmpty())
      return paperSizeOfLocale(locale.section(u'.', 0, 0));
  }
  return QPageSize(QPageSize::A4);
}

QPageLayout paperOfSize(const QPageSize& size) {
  return {size, QPageLayout::Portrait,
          QMarginsF(kPaperMargin, kPaperMargin, kPaperMargin, kPaperMargin),
          QPageLayout::Millimeter};
}

int PaperDevice::metric(PaintDeviceMetric metric) const {
  switch (metric) {
  case PdmDpiX:
  case PdmDpiY:
  case PdmPhysicalDpiX:
  case PdmPhysicalDpiY:
    return kPaperResolution;
  case PdmWidth:
  case PdmHeight:
  case PdmWidthMM:
  case PdmHeightMM:
    return 1;
  case PdmDepth:
    return 32;
  default:
    return QPaintDevice::metric(metric);
  }
}

} // namespace tockwise
