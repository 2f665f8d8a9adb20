// The structure of the status menu: which items there are, without their texts.
#pragma once

#include <QString>

#include <vector>

namespace tockwise {

enum class MenuItemKind : quint8 {
  Separator,
  Command, // a fixed item with an action
  CurrentAlerts,
  RecentReminders,
  SortQueue,
  Options,
  QueueHeader,
  QueueCount,
  NoReminders,
  ReminderIndex,
  ReminderDate,
  ReminderCountdown,
  ReminderLast,
  ReminderTitle,
  ReminderSeparator,
  Alert,
  NoAlerts,
  Recent,
  SortOrder,
  Option,
  ReminderDelete,
  ReminderCopy,
  // Only where a renderer asks for them:
  ReminderShow, // a title's own action, where an item with a submenu cannot be chosen
  MoreReminders // stands for the reminders that a shortened menu leaves out
};

/// One item. A renderer may keep it as long as it shows the item: what it is about is known by
/// reminderUUID; row is only where that stood when the structure was made.
struct MenuEntry {
  MenuItemKind kind = MenuItemKind::Separator;
  qint32 row = 0; // queue index, list position, or row of a fixed table
  QString reminderUUID;

  friend bool operator==(const MenuEntry&, const MenuEntry&) = default;
};

/// Whether both are the same item, if in another place.
bool isSameItem(const MenuEntry& left, const MenuEntry& right);

/// What turns one list of items into another with as few steps as possible: first the removals,
/// then the insertions, each in the order given. All other items stay what they are.
struct MenuChanges {
  std::vector<qsizetype> removed;   // positions in the old list, last first
  std::vector<qsizetype> inserted;  // positions in the new list, first first
  std::vector<qsizetype> movedFrom; // for each inserted: where it was in the old list, or -1
  bool isEmpty() const { return removed.empty() && inserted.empty(); }
};
MenuChanges menuChanges(const std::vector<MenuEntry>& before, const std::vector<MenuEntry>& after);

} // namespace tockwise
