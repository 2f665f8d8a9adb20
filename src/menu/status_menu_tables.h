// The fixed items of the status menu: titles, actions, places.
#pragma once

#include "menu/menu_entry.h"

#include <span>

namespace tockwise::menu_tables {

struct FixedItem {
  const char16_t* title;
  const char16_t* action = u"";
  char16_t hotKey = 0; // shown behind the title while global hot keys are on
};

/// Rows of MenuItemKind::Command.
enum CommandRow : qint32 {
  Quit,
  SaveReminders,
  OpenReminders,
  NewReminder,
  ShowAllAlerts,
  HideAllAlerts,
  PrintAllAlerts,
  CloseAllAlerts,
  ClearRecent,
  Preferences,
  ClearQueue,
  ImportCalendarEvents,
  Print,
  About,
  Preview
};

/// Rows of MenuItemKind::Option.
enum OptionRow : qint32 { ShowItemIndex, ShowRichText, TruncateReminders, ShowRuler };

/// The items of a kind whose rows are fixed; empty for other kinds.
std::span<const FixedItem> fixedItems(MenuItemKind kind);

} // namespace tockwise::menu_tables
