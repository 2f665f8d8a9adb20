// The paper that is printed on: its size where nobody has chosen one, and its dots.
#pragma once

#include <QPageLayout>
#include <QPaintDevice>

namespace tockwise {

/// Dots to the inch in which pages are laid out. The same for the preview, PDF and every printer,
/// so that lines and pages break alike; fine enough for print, and coarse enough for thousands of
/// pages in Qt's numbers for layouts.
inline constexpr int kPaperResolution = 300;

/// Around the text where nobody has chosen other margins, in millimetres.
inline constexpr double kPaperMargin = 20;

/// The size of paper that is usual in a locale ("en_US"): A4 or Letter. Any thread, as all here.
QPageSize paperSizeOfLocale(const QString& locale);
/// The same for the user's locale: LC_ALL, LC_PAPER, LANG.
QPageSize paperSizeOfUser();

/// Upright paper of that size with the usual margins.
QPageLayout paperOfSize(const QPageSize& size);

/// What pages are measured with. Nothing is painted on it.
class PaperDevice final : public QPaintDevice {
 public:
  QPaintEngine* paintEngine() const override { return nullptr; }

 protected:
  int metric(PaintDeviceMetric metric) const override;
};

} // namespace tockwise
