// The list of the quick-time menu as a view shows it, and how a row is drawn.
#pragma once

#include "prefs/quick_remind_menu.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

namespace tockwise {

/// Main thread. A copy of the list.
class QuickRemindModel final : public QAbstractListModel {
 public:
  /// menu must outlive it.
  QuickRemindModel(const QuickRemindMenu& menu, QObject* parent);

  /// Shows the list as it stands now; what has not changed stays untouched.
  void reload();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  const QuickRemindMenu& m_menu;
  QStringList m_entries;
};

/// What an entry is worth, where that is not what it seems to say.
constexpr int kQuickTimeRemarkRole = Qt::UserRole;

/// Draws the remark quietly behind the entry.
class QuickRemindDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace tockwise
