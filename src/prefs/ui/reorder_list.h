// A list whose rows are put in another order by dragging them.
#pragma once

#include <QListView>

namespace tockwise {

/// Main thread. The list only says where a row was dragged to; whoever owns the rows moves it.
/// Escape, losing the keyboard, and rows that are others by now give a drag up.
class ReorderList final : public QListView {
  Q_OBJECT
 public:
  using QListView::QListView;

  void reset() override;

 Q_SIGNALS:
  /// The row was dropped before the row that is destination now (the number of rows: the end).
  void rowDropped(int row, int destination);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int destinationAt(int y) const;
  void dragTo(int y);
  void endDrag();
  void giveUp();

  QPoint m_pressed;
  int m_row = -1;         // under the pressed button
  int m_destination = -1; // while it is dragged
  bool m_givenUp = false; // until the button is released
};

} // namespace tockwise
