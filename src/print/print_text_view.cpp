#include "print/print_text_view.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

constexpr int kGap = 16; // pixels around and between the pages
/// A page is shown up to so much larger than it is.
constexpr double kLargest = 1.4;
constexpr double kSmallest = 0.1;
constexpr QSizeF kA4InDots(2480, 3508);
constexpr QSize kSizeHint(700, 780);

} // namespace

PrintTextView::PrintTextView(QWidget* parent) : QAbstractScrollArea(parent) {
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::StrongFocus);
  setFrameShape(QFrame::NoFrame);
}

void PrintTextView::setPages(PrintPages* pages) {
  m_pages = pages;
  const int count = pageCount();
  setAccessibleDescription(count == 0   ? QString()
                           : count == 1 ? QStringLiteral("1 page")
                                        : QStringLiteral("%1 pages").arg(count));
  updateRange();
  viewport()->update();
  Q_EMIT currentPageChanged();
}

void PrintTextView::print(PrintSettings& settings, Prompter& prompter, const PrintPanels& panels) {
  if (!m_pages || !m_pages->isComplete())
    return;
  PrintOperation(*m_pages, settings, prompter, panels, window()).run();
}

QSize PrintTextView::sizeHint() const {
  return kSizeHint;
}

int PrintTextView::pageCount() const {
  return m_pages ? m_pages->pageCount() : 0;
}

double PrintTextView::zoom() const {
  const QSizeF page = m_pages ? m_pages->pageSize() : kA4InDots;
  const double asItIs = double(logicalDpiX()) / kPaperResolution;
  const double asWideAsTheView = (viewport()->width() - 2 * kGap) / page.width();
  return std::clamp(asWideAsTheView, kSmallest * asItIs, kLargest * asItIs);
}

QSizeF PrintTextView::shownSize() const {
  return (m_pages ? m_pages->pageSize() : kA4InDots) * zoom();
}

QRectF PrintTextView::placeOf(int page) const {
  const QSizeF size = shownSize();
  const double left = std::max<double>(kGap, (viewport()->width() - size.width()) / 2);
  const double top = kGap + page * (size.height() + kGap) - verticalScrollBar()->value();
  return {QPointF(std::floor(left), std::floor(top)), size};
}

int PrintTextView::currentPage() const {
  const double middle = verticalScrollBar()->value() + viewport()->height() / 2.0 - kGap / 2.0;
  const int page = int(middle / (shownSize().height() + kGap));
  return std::clamp(page, 0, std::max(0, pageCount() - 1));
}

void PrintTextView::updateRange() {
  QScrollBar* bar = verticalScrollBar();
  const double before = bar->maximum() > 0 ? double(bar->value()) / bar->maximum() : 0;
  const int count = std::max(1, pageCount());
  const int height = int(std::ceil(count * (shownSize().height() + kGap))) + kGap;
  bar->setRange(0, std::max(0, height - viewport()->height()));
  bar->setPageStep(viewport()->height() - kGap);
  bar->setSingleStep(fontMetrics().height() * 3);
  bar->setValue(int(before * bar->maximum()));
}

QColor PrintTextView::deskColor() const {
  const bool isDark = palette().color(QPalette::Window).lightness() < 128;
  return isDark ? palette().color(QPalette::Window).darker(140)
                : palette().color(QPalette::Window).darker(125);
}

void PrintTextView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.fillRect(event->rect(), deskColor());
  const int count = std::max(1, pageCount());
  const double step = shownSize().height() + kGap;
  const int first = int((verticalScrollBar()->value() + event->rect().top() - kGap) / step);
  for (int page = std::clamp(first, 0, count - 1); page < count; ++page) {
    if (placeOf(page).top() > event->rect().bottom())
      break;
    paintPage(painter, page);
  }
}

void PrintTextView::paintPage(QPainter& painter, int page) const {
  const QRectF place = placeOf(page);
  painter.fillRect(place.translated(2, 2), QColor(0, 0, 0, 40));
  painter.fillRect(place, Qt::white);
  painter.setPen(QColor(0, 0, 0, 70));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(place.adjusted(-0.5, -0.5, 0.5, 0.5));
  if (page >= pageCount())
    return;
  painter.save();
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.translate(place.topLeft());
  painter.scale(zoom(), zoom());
  m_pages->paint(painter, page);
  painter.restore();
}

void PrintTextView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  updateRange();
}

void PrintTextView::scrollContentsBy(int, int) {
  viewport()->update();
  Q_EMIT currentPageChanged();
}

void PrintTextView::keyPressEvent(QKeyEvent* event) {
  QScrollBar* bar = verticalScrollBar();
  switch (event->key()) {
  case Qt::Key_Home:
    return bar->triggerAction(QAbstractSlider::SliderToMinimum);
  case Qt::Key_End:
    return bar->triggerAction(QAbstractSlider::SliderToMaximum);
  case Qt::Key_Space:
    return bar->triggerAction(event->modifiers() & Qt::ShiftModifier
                                  ? QAbstractSlider::SliderPageStepSub
                                  : QAbstractSlider::SliderPageStepAdd);
  default:
    QAbstractScrollArea::keyPressEvent(event);
  }
}

} // namespace tockwise
