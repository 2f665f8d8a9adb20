// A reminder's repeat rule and task in a few words, as they stand beside the buttons that change
// them.
#pragma once

#include "store/reminder.h"

namespace tockwise {

/// "Does not repeat", "Repeats every week on Mon and Tue between 09:00 and 17:00, 1 hour before".
QString repeatSummary(const Interval& interval, const Extra& extra, const Offset& offset);

/// "No task", "Document: plan.odt", "Web Address: example.org". One line of plain text, of any
/// length.
QString taskSummary(const Task& task);

} // namespace tockwise
