// The repeat options of a reminder in words.
#pragma once

#include "store/reminder.h"

#include <QString>

namespace tockwise {

/// "Repeats every 2 days. Alerts 1 hour before its date, only on Mon between 09:00 and 17:00."
QString optionText(const Interval& interval, const Extra& extra, const Offset& offset);

} // namespace tockwise
