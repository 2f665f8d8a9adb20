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

/// The first moment not before now at which an alert of this rule will open, found by the rules
/// that firing follows (including that a one-shot reminder which its rule holds back is tried
/// again as firing does); nothing when there is none.
std::optional<Date> nextFiring(const FireRule& rule, Date now, const Calendar& calendar);

/// One line: "Fires Tue 3/4/2025 09:05 AM, then every week on Mon and Tue between 09:00 and 17:00",
/// or why it never will.
QString firesText(const FireRule& rule, Date now, const Calendar& calendar);

} // namespace tockwise
