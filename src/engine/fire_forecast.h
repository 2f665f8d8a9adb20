// When a reminder will next fire, and how to say so.
#pragma once

#include "dates/calendar.h"
#include "store/reminder.h"

#include <optional>

namespace tockwise {

/// What decides when a reminder fires.
struct FireRule {
  Date fireDate;
  Interval interval = kBlankInterval;
  Extra extra = kBlankExtra;
  Offset offset = kBlankOffset;
  friend bool operator==(const FireRule&, const FireRule&) = default;
};

// All of these: any one thread per calendar.

/// The first moment not before now at which an alert of a reminder with this rule, saved now and
/// not fired yet, opens: found by the steps that the ticks and firing take, in a few milliseconds
/// at most whatever the rule. Nothing when there is none: its date is the distant future or later,
/// or the extra rule refuses every occurrence (of the next thousands, which is decades).
std::optional<Date> nextFiring(const FireRule& rule, Date now, const Calendar& calendar);

/// One line: "Fires Tue 3/4/2025 09:05 AM, then every week on Mon and Tue between 09:00 and 17:00",
/// or why it never will ("Never fires: no weekday is allowed").
QString firesText(const FireRule& rule, Date now, const Calendar& calendar);

/// "every week", "every 2 days", "every 1 month, 2 days and 3 hours"; "" for one that does not
/// repeat.
QString intervalText(const Interval& interval);

/// "on Mon and Tue between 09:00 and 17:00", "on weekdays", "on no weekday"; "" for the blank one.
QString extraText(const Extra& extra);

/// "1 day before", "2 hours and 30 minutes before"; "" for none.
QString offsetText(const Offset& offset);

/// Why an extra rule allows no moment at all: "no weekday is allowed"; "" when it allows some.
QString reasonNeverToAlert(const Extra& extra);

} // namespace tockwise
