// A queue, settings and whatever else a status menu is made of, for tests.
#pragma once

#include "dates/calendar.h"
#include "menu/status_menu.h"

#include <functional>

namespace tockwise {

class MenuFixture {
 public:
  MenuFixture()
      : settings({{QStringLiteral("useAbsolute"), true},
                  {QStringLiteral("useCountdown"), true},
                  {QStringLiteral("truncateReminders"), true},
                  {QStringLiteral("showRichText"), true},
                  {QStringLiteral("sortType"), 1}}) {}

  Date now{790000000};
  ReminderQueue queue;
  MemorySettings settings;
  RecentReminders recent;
  std::vector<OpenAlert> openAlerts;
  QString sortTypeText = QStringLiteral("date");
  RichTitles* richTitles = nullptr;
  QSet<QString> availableActions{QStringLiteral("quit"),
                                 QStringLiteral("newReminder"),
                                 QStringLiteral("deleteMenuItem"),
                                 QStringLiteral("clearQueue"),
                                 QStringLiteral("sortByDate"),
                                 QStringLiteral("recentReminder"),
                                 QStringLiteral("setShowItemIndex")};

  /// Appends a reminder that fires so many seconds from now; returns its identity.
  QString add(const QString& text, double seconds = 3600,
              const std::function<void(Reminder&)>& change = {}) {
    Reminder reminder;
    reminder.reminderQueue = now.plusSeconds(seconds);
    reminder.reminderDateTimeCreated = now;
    reminder.reminderDateTimeModified = now;
    reminder.reminderUUID = UUIDString();
    reminder.reminderDescriptions = text;
    if (change)
      change(reminder);
    queue.append(reminder);
    return reminder.reminderUUID;
  }

  MenuInput input() const {
    MenuInput input;
    input.queue = &queue;
    input.recentReminders = recent.entries();
    input.settings = &settings;
    input.openAlerts = openAlerts;
    input.sortTypeText = sortTypeText;
    input.now = now;
    input.richTitles = richTitles;
    input.availableActions = availableActions;
    return input;
  }

  std::vector<MenuItem> menu() const { return buildStatusMenu(input(), Calendar::current()); }
};

} // namespace tockwise
