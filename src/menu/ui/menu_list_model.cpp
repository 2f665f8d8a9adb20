#include "menu/ui/menu_list_model.h"

namespace tockwise {

MenuListModel::MenuListModel(LiveMenu& live, QObject* parent)
    : QAbstractListModel(parent), m_live(live) {}

void MenuListModel::refresh() {
  m_live.refresh();
  std::vector<MenuEntry> entries = m_live.menu().entries();
  const MenuChanges changes = menuChanges(m_entries, entries);
  // Neighbours go and come together: a view lays itself out once for each group.
  for (size_t i = 0; i < changes.removed.size();) {
    const qsizetype last = changes.removed[i];
    qsizetype first = last;
    while (++i < changes.removed.size() && changes.removed[i] == first - 1)
      --first;
    beginRemoveRows({}, int(first), int(last));
    m_entries.erase(m_entries.begin() + first, m_entries.begin() + last + 1);
    endRemoveRows();
  }
  for (size_t i = 0; i < changes.inserted.size();) {
    const qsizetype first = changes.inserted[i];
    qsizetype last = first;
    while (++i < changes.inserted.size() && changes.inserted[i] == last + 1)
      ++last;
    beginInsertRows({}, int(first), int(last));
    m_entries.insert(m_entries.begin() + first, entries.begin() + first,
                     entries.begin() + last + 1);
    endInsertRows();
  }
  m_entries = std::move(entries); // queue positions may have moved without a row doing so
}

const MenuEntry* MenuListModel::entry(const QModelIndex& index) const {
  return index.isValid() && index.row() < rowCount() ? &m_entries[size_t(index.row())] : nullptr;
}

int MenuListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant MenuListModel::data(const QModelIndex& index, int role) const {
  const MenuEntry* item = entry(index);
  if (!item || StatusMenu::isSeparator(*item))
    return {};
  switch (role) {
  case Qt::DisplayRole:
  case Qt::AccessibleTextRole:
    return menuLabel(m_live.title(*item)).text;
  case Qt::ToolTipRole:
    return m_live.toolTip(*item);
  default:
    return {};
  }
}

Qt::ItemFlags MenuListModel::flags(const QModelIndex& index) const {
  const MenuEntry* item = entry(index);
  if (!item || StatusMenu::isSeparator(*item) || !m_live.menu().isEnabled(*item))
    return Qt::ItemNeverHasChildren;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

} // namespace tockwise
