#include "prefs/ui/reorder_list.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace tockwise {

void ReorderList::mousePressEvent(QMouseEvent* event) {
  endDrag();
  m_givenUp = false;
  QListView::mousePressEvent(event);
  m_pressed = event->position().toPoint();
  const bool left = event->button() == Qt::LeftButton;
  m_row = left ? indexAt(m_pressed).row() : -1;
}

// With the button down the list itself would select whatever row the pointer comes to.
void ReorderList::mouseMoveEvent(QMouseEvent* event) {
  if (m_givenUp)
    return;
  if (m_row < 0 || !(event->buttons() & Qt::LeftButton)) {
    QListView::mouseMoveEvent(event);
    return;
  }
  const QPoint at = event->position().toPoint();
  if (m_destination >= 0 || (at - m_pressed).manhattanLength() >= QApplication::startDragDistance())
    dragTo(at.y());
}

void ReorderList::mouseReleaseEvent(QMouseEvent* event) {
  const int row = m_row;
  const int destination = m_destination;
  endDrag();
  if (std::exchange(m_givenUp, false))
    return;
  if (destination < 0)
    QListView::mouseReleaseEvent(event);
  else if (destination != row && destination != row + 1)
    Q_EMIT rowDropped(row, destination);
}

void ReorderList::keyPressEvent(QKeyEvent* event) {
  if (m_destination >= 0 && event->key() == Qt::Key_Escape) {
    giveUp();
    return;
  }
  QListView::keyPressEvent(event);
}

void ReorderList::focusOutEvent(QFocusEvent* event) {
  giveUp();
  QListView::focusOutEvent(event);
}

void ReorderList::reset() {
  giveUp();
  QListView::reset();
}

void ReorderList::dragTo(int y) {
  viewport()->setCursor(Qt::ClosedHandCursor);
  // A row beyond the edge comes into view.
  const int rows = model()->rowCount();
  const int near = destinationAt(y);
  if (y < 0 && near > 0)
    scrollTo(model()->index(near - 1, 0));
  else if (y > viewport()->height() && near < rows)
    scrollTo(model()->index(near, 0));
  m_destination = destinationAt(y);
  viewport()->update();
}

void ReorderList::endDrag() {
  m_row = -1;
  if (m_destination < 0)
    return;
  m_destination = -1;
  viewport()->unsetCursor();
  viewport()->update();
}

void ReorderList::giveUp() {
  m_givenUp = m_destination >= 0;
  endDrag();
}

int ReorderList::destinationAt(int y) const {
  const int rows = model()->rowCount();
  for (int row = 0; row < rows; ++row) {
    if (y < visualRect(model()->index(row, 0)).center().y())
      return row;
  }
  return rows;
}

void ReorderList::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (m_destination < 0)
    return;
  constexpr int kThickness = 2;
  const int rows = model()->rowCount();
  const int y = m_destination < rows ? visualRect(model()->index(m_destination, 0)).top()
                                     : visualRect(model()->index(rows - 1, 0)).bottom();
  QPainter painter(viewport());
  const int top = qBound(0, y - kThickness / 2, viewport()->height() - kThickness);
  painter.fillRect(0, top, viewport()->width(), kThickness, palette().color(QPalette::Text));
}

} // namespace tockwise
