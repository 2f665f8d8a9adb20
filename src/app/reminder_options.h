// The options of `add` and `edit`, as the command line and D-Bus give them, applied to a reminder.
#pragma once

#include "base/result.h"
#include "dates/calendar.h"
#include "store/reminder.h"

#include <QVariantMap>

namespace tockwise {

/// The options by name, with values of these types (command-line words arrive as strings, except
/// for the flags):
///   text    string    the plain text
///   rich    bytes     a keyed archive of a text storage, which the plain text is taken from; not
///                     together with text. Pictures that are too wide are scaled
///   at      string    "YYYY-MM-DD HH:MM", local time
///   in      string    a quick-time text, "1 Day 2 Hours"
///   every   string    month, week, day, hour, minute, or "M,D,H,M"; "never" for no repetition
///   days    string    "Sun,Mon,…": the weekdays on which it may alert
///   between string    "HH:MM-HH:MM": the time of day in which it may alert
///   before  string    "D,H,M" of advance notice
///   email   boolean   sms   boolean
///   task    string    "TYPE:PATH", TYPE 0 to 4 or web, media, document, application, script;
///                     "" for none
/// Applies the options to reminder. Fails with Usage, naming the option, and then leaves the
/// reminder as it was. The fire date's seconds are cut to 0 as in the editor. Main thread.
Result<void> applyReminderOptions(const QVariantMap& options, Reminder& reminder, Date now,
                                  const Calendar& calendar);

} // namespace tockwise
