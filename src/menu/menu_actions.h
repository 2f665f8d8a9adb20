// What the items of the status menu do that needs no window: recent reminders, the display
// options, clearing the queue.
#pragma once

#include "ports/prompter.h"
#include "store/reminder_store.h"

#include <optional>

namespace tockwise {

/// The setting that a display option of the menu flips ("setShowRuler" flips showRuler), if the
/// operation is one of the four.
std::optional<QString> settingOfToggle(const QString& action);

/// The operations that toggle a display option.
QStringList toggleActions();

/// Main thread.
class MenuActions {
 public:
  /// The references must outlive the object.
  MenuActions(ReminderStore& store, Prompter& prompter);

  /// The whole text of the recent reminder that stood at that position under that title when the
  /// menu was shown; the list may have moved since. Nothing when it is gone or has no text.
  std::optional<QString> recentText(qsizetype position, const QString& title) const;
  void clearRecent();

  /// Flips a boolean setting and stores it; it reaches the disk with the next synchronisation.
  void toggle(const QString& setting);

  /// Asks, and on anything but "No" removes every reminder and saves. Whether it did. Open alert
  /// windows stay open.
  bool clearQueue();

  /// Says that no calendar is connected.
  void importCalendarEventsPrefs();

 private:
  ReminderStore& m_store;
  Prompter& m_prompter;
};

} // namespace tockwise
