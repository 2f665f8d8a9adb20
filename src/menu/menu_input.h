// What the status menu is made of: the program's state at one moment.
#pragma once

#include "menu/rich_titles.h"
#include "store/recent_reminders.h"
#include "store/reminder_queue.h"
#include "store/settings.h"

#include <QSet>

namespace tockwise {

/// An open alert window, for its item in "Current Alerts".
struct OpenAlert {
  QString text;         // the reminder's text as the window shows it
  QString reminderUUID; // the reminder it is of, or ""
};

struct MenuInput {
  const ReminderQueue* queue = nullptr;        // outlives the menu made of it
  std::vector<RecentReminder> recentReminders; // oldest first
  const Settings* settings = nullptr;          // read while the menu is made
  std::vector<OpenAlert> openAlerts;           // oldest first
  QString sortTypeText;                        // the order's name, null when it is unknown
  Date now;
  RichTitles* richTitles = nullptr; // null: titles are plain; else it outlives the menu
  QSet<QString> availableActions;   // operations without colons; the others are disabled
};

} // namespace tockwise
