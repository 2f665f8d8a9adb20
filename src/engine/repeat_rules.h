// The repeat rules: values in, values out.
#pragma once

#include "dates/calendar.h"
#include "store/reminder.h"

#include <optional>

namespace tockwise {

bool isRepeatingReminder(const Interval& interval);

/// "every month", "every day", "every week", "every hour", "every minute" or "regular"; the first
/// that the interval meets, in that order of tests.
QString reminderTypeString(const Interval& interval);

/// The moment at which a reminder falls due: its fire date less the offset, by the calendar.
Date alertDate(Date fireDate, const Offset& offset, const Calendar& calendar);

/// A moment that alertDate is never earlier than, found without the calendar.
Date earliestAlertDate(Date fireDate, const Offset& offset);

/// The next date of a repeating reminder that fires: fireDate moved by the interval until it is
/// not earlier than now (at least once), each move from the result of the one before. Costs no
/// more for a reminder missed for years. An interval that does not move forward gives fireDate
/// moved once; one that stops moving forward on the way gives the date where it stopped.
Date nextFireDate(Date fireDate, const Interval& interval, Date now, const Calendar& calendar);

/// Whether the extra rule lets a reminder alert at this moment: its weekday allowed, and strictly
/// inside the time window if there is one. A window across midnight never matches.
bool checkExtra(const Extra& extra, Date now, const Calendar& calendar);

/// The first moment later than now, on a whole second, at which checkExtra says yes; nothing when
/// there is none in the coming two weeks (then the rule forbids every moment).
std::optional<Date> nextMomentAllowed(const Extra& extra, Date now, const Calendar& calendar);

} // namespace tockwise
