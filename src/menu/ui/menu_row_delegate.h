// Draws a row of the menu window as the style draws a menu item.
#pragma once

#include "menu/ui/rich_document.h"

#include <QStyleOptionMenuItem>
#include <QStyledItemDelegate>

namespace tockwise {

class MenuListModel;
struct MenuEntry;

/// Main thread; for views of a MenuListModel.
class MenuRowDelegate final : public QStyledItemDelegate {
  Q_OBJECT
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  QStyleOptionMenuItem menuOption(const QStyleOptionViewItem& option, const MenuListModel& model,
                                  const MenuEntry& entry) const;
  int plainHeight(const QStyleOptionViewItem& option) const;

  mutable RichDocuments m_documents;
  mutable int m_plainHeight = 0; // of an item in m_heightFont
  mutable QFont m_heightFont;
};

} // namespace tockwise
