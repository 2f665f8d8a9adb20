#include "engine/repeat_rules.h"

namespace tockwise {

bool isRepeatingReminder(const Interval& interval) {
  return interval != kBlankInterval;
}

QString reminderTypeString(const Interval& interval) {
  const auto [months, days, hours, minutes] = interval;
  if (months == 1)
    return QStringLiteral("every month");
  if (days == 1)
    return QStringLiteral("every day");
  if (days == 7)
    return QStringLiteral("every week");
  if (hours == 1)
    return QStringLiteral("every hour");
  if (minutes == 1)
    return QStringLiteral("every minute");
  return QStringLiteral("regular");
}

} // namespace tockwise
