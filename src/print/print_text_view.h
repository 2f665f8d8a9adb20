// The text of a print preview: white pages on a desk, as they will leave the printer.
#pragma once

#include "print/print_operation.h"
#include "print/print_pages.h"

#include <QAbstractScrollArea>

namespace tockwise {

/// Main thread.
class PrintTextView final : public QAbstractScrollArea {
  Q_OBJECT
 public:
  explicit PrintTextView(QWidget* parent = nullptr);

  /// Shows the pages once they are complete, and an empty one until then. They must outlive the
  /// view, or be taken away with null. To be called again when they changed.
  void setPages(PrintPages* pages);

  /// Prints the document with the settings shared by all prints, centred neither way: the text
  /// stands where it stands on the page. The print dialog is part of it; runs event loops.
  void print(PrintSettings& settings, Prompter& prompter, const PrintPanels& panels);

  /// The page in the middle of the view, from 0.
  int currentPage() const;
  int pageCount() const;

  QSize sizeHint() const override;

 Q_SIGNALS:
  void currentPageChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// Where the page stands in the viewport.
  QRectF placeOf(int page) const;
  QSizeF shownSize() const;
  double zoom() const;
  void updateRange();
  void paintPage(QPainter& painter, int page) const;
  QColor deskColor() const;

  PrintPages* m_pages = nullptr;
};

} // namespace tockwise
