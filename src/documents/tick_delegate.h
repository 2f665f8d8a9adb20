// Draws the boxes of a list in which ticks matter.
#pragma once

#include <QStyledItemDelegate>

namespace tockwise {

/// Main thread. An empty box is outlined: in dark colours Qt's own is as dark as the list.
class TickDelegate final : public QStyledItemDelegate {
  Q_OBJECT
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

} // namespace tockwise
