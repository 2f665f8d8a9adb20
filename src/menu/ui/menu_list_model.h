// The status menu as a list of rows, for the window that stands in for a tray menu.
#pragma once

#include "menu/ui/live_menu.h"

#include <QAbstractListModel>

namespace tockwise {

/// Main thread. Rows come and go one by one; texts are made when a view asks for them.
class MenuListModel final : public QAbstractListModel {
  Q_OBJECT
 public:
  /// live outlives the model.
  explicit MenuListModel(LiveMenu& live, QObject* parent = nullptr);

  /// Takes the menu as it is now. A view repaints itself to show the texts of the moment.
  void refresh();
  const MenuEntry* entry(const QModelIndex& index) const;
  LiveMenu& live() const { return m_live; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  LiveMenu& m_live;
  std::vector<MenuEntry> m_entries;
};

} // namespace tockwise
