#include "documents/tick_delegate.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>

namespace tockwise {

void TickDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  QStyleOptionViewItem item = option;
  initStyleOption(&item, index);
  if (!item.features.testFlag(QStyleOptionViewItem::HasCheckIndicator) || !item.widget)
    return;
  const QRect box = item.widget->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator,
                                                         &item, item.widget);
  const bool selected = item.state.testFlag(QStyle::State_Selected);
  painter->save();
  painter->setPen(item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(box.adjusted(0, 0, -1, -1));
  painter->restore();
}

} // namespace tockwise
