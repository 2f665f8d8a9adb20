#include "editor/quick_time_pop.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QStandardItemModel>
#include <QWheelEvent>

namespace tockwise {

QuickTimePop::QuickTimePop(QWidget* parent) : QComboBox(parent) {
  setSizeAdjustPolicy(QComboBox::AdjustToContents);
  connect(this, &QComboBox::activated, this, [this](int index) {
    const QString title = itemText(index);
    setCurrentIndex(0);
    if (index > 0)
      Q_EMIT chosen(title);
  });
}

void QuickTimePop::setItems(const QString& caption, const QStringList& titles) {
  clear();
  addItem(caption);
  addItems(titles);
  // The caption is no choice.
  if (auto* items = qobject_cast<QStandardItemModel*>(model()))
    items->item(0)->setEnabled(false);
  setCurrentIndex(0);
  setMaxVisibleItems(std::max(int(titles.size()) + 1, 10));
}

void QuickTimePop::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool opens = key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Space ||
                     key == Qt::Key_Select || key == Qt::Key_F4;
  const bool searches =
      !event->text().isEmpty() && event->text().front().isLetterOrNumber() &&
      !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
  if (!opens && !searches) {
    // Return is the window's; everything else has no use here.
    event->ignore();
    return;
  }
  showPopup();
  if (searches)
    QCoreApplication::sendEvent(view(), event);
}

void QuickTimePop::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

} // namespace tockwise
