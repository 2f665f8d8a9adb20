// The status menu as data: its structure at once, its texts when they are asked for.
//
// Making one costs a few steps a reminder and builds no text, so that a renderer may make one
// each second, find with menuChanges() what differs from the one that it shows, and ask for the
// texts of the items that can be seen.
#pragma once

#include "menu/menu_entry.h"
#include "menu/menu_input.h"
#include "menu/menu_item.h"

namespace tockwise {

class Calendar;

/// The one action that is the renderer's own: show the whole menu in a window.
inline constexpr char16_t kShowMenuWindow[] = u"showMenuWindow";

/// Main thread. Texts are those of the moment that the input was taken; reminders are found by
/// their reminderUUID should the queue have been reordered since.
class StatusMenu {
 public:
  /// An empty menu.
  StatusMenu() = default;
  StatusMenu(MenuInput input, const Calendar& calendar);

  const std::vector<MenuEntry>& entries() const { return m_entries; }
  /// entries() with at most so many reminders, then an item that says how many more there are
  /// and whose action is kShowMenuWindow: a pop-up of ten thousand helps nobody.
  std::vector<MenuEntry> entriesUpTo(qsizetype reminders) const;
  static bool hasSubmenu(const MenuEntry& entry);
  /// The items of an item's submenu, empty when it has none.
  std::vector<MenuEntry> submenu(const MenuEntry& entry) const;

  /// submenu(), led by an item for entry's own action: for hosts in which an item that has a
  /// submenu cannot be chosen itself.
  std::vector<MenuEntry> submenuWithOwnAction(const MenuEntry& entry) const;

  static bool isSeparator(const MenuEntry& entry);
  /// Whether the title changes by itself as time passes.
  static bool isLive(const MenuEntry& entry);
  /// The operation, or "" for an item without action.
  QString action(const MenuEntry& entry) const;
  qint64 tag(const MenuEntry& entry) const;
  /// An item can be chosen, or opens a submenu in which something can.
  bool isEnabled(const MenuEntry& entry) const;
  /// Whether the item's own action can be run now.
  bool isActionAvailable(const MenuEntry& entry) const;
  static bool isCheckable(const MenuEntry& entry);
  bool isChecked(const MenuEntry& entry) const;

  QString title(const MenuEntry& entry, const Calendar& calendar) const;
  QString toolTip(const MenuEntry& entry, const Calendar& calendar) const;
  /// The rich title, or null for a plain one. Valid until the next call.
  const RichText* richTitle(const MenuEntry& entry) const;

  /// Everything about the item, its submenu included.
  MenuItem item(const MenuEntry& entry, const Calendar& calendar) const;

  const MenuInput& input() const { return m_input; }

 private:
  struct Options {
    bool showItemIndex = false;
    bool showRichText = false;
    bool truncateReminders = false;
    bool showRuler = false;
    bool useAbsolute = false;
    bool useCountdown = false;
    bool useGlobalHotKeys = false;
    qint64 sortType = 0;
  };
  void appendFixedItems();
  void appendReminders(const Calendar& calendar);
  std::optional<qsizetype> indexOf(const MenuEntry& entry) const;
  QString reminderText(const MenuEntry& entry, const Calendar& calendar) const;
  QString countText() const;
  Truncation truncation() const;

  MenuInput m_input;
  Options m_options;
  std::vector<MenuEntry> m_entries;
};

/// The whole menu with its texts.
std::vector<MenuItem> buildStatusMenu(const MenuInput& input, const Calendar& calendar);

} // namespace tockwise
