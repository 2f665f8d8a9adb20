// Dates as the command line reads and writes them.
#pragma once

#include "base/result.h"
#include "dates/calendar.h"

#include <QStringView>

namespace tockwise {

/// "YYYY-MM-DD HH:MM", exactly so, as a wall-clock time of the calendar's zone. Usage error for
/// any other form and for a date or a time that there is not ("2025-02-30 08:00",
/// "2025-01-01 24:00"). A time that the clock skips is taken as Calendar::dateWithYear does.
Result<Date> parseLocalDateTime(QStringView text, const Calendar& calendar);

/// ISO 8601 in UTC with microseconds: "2025-03-04T08:05:00.000000Z". Years beyond four digits get
/// a sign; "" for a date that is no number.
QString iso8601UTC(Date date);

} // namespace tockwise
