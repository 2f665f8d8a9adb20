// The status menu as a renderer follows it: taken when it is about to be shown, taken again each
// second while it is open, and what differs between the two.
#pragma once

#include "dates/calendar.h"
#include "menu/status_menu.h"

#include <QPalette>

#include <functional>

namespace tockwise {

/// The reminders that a menu shows at the most; the last item tells of the others.
inline constexpr qsizetype kMostShownReminders = 1000;

/// The program's state as it is now, for the menu. Called on the main thread.
using MenuSource = std::function<MenuInput()>;

/// A chosen item, with the identity it had when it was shown.
struct MenuActivation {
  QString action;       // the operation's name without colons
  qint64 tag = 0;       // queue index or list position when it was shown
  QString reminderUUID; // the reminder it is about, or ""
  QString title;        // the text that was chosen

  friend bool operator==(const MenuActivation&, const MenuActivation&) = default;
};

/// Main thread.
class LiveMenu {
 public:
  explicit LiveMenu(MenuSource source) : m_source(std::move(source)) {}

  /// Takes the menu as it is now. What differs is found with menuChanges().
  void refresh() { m_menu = StatusMenu(m_source(), Calendar::current()); }
  /// Lets go of everything taken.
  void reset() { m_menu = {}; }

  const StatusMenu& menu() const { return m_menu; }
  QString title(const MenuEntry& entry) const { return m_menu.title(entry, Calendar::current()); }
  QString toolTip(const MenuEntry& entry) const {
    return m_menu.toolTip(entry, Calendar::current());
  }
  MenuActivation activation(const MenuEntry& entry) const {
    return {m_menu.action(entry), m_menu.tag(entry), entry.reminderUUID, title(entry)};
  }

 private:
  MenuSource m_source;
  StatusMenu m_menu;
};

/// A title split into what is shown on the left and the key shown on the right, the latter in
/// the words of this platform ("Ctrl+Super+M"), or "".
struct MenuLabel {
  QString text;
  QString key;
};
MenuLabel menuLabel(const QString& title);

/// Whether the item is there to be read, not chosen: it is disabled, yet no less legible.
bool isReading(const MenuEntry& entry);
/// palette with a disabled text that can be read well: between text and background.
QPalette readingPalette(QPalette palette);

/// label as QMenu takes it: one line, no mnemonic, the key in its column.
QString menuText(const MenuLabel& label);

} // namespace tockwise
