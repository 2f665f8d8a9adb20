// The grammar of quick times: "1 Day 2 Hours". Any thread.
#pragma once

#include <QString>

namespace tockwise {

/// The seconds that a quick-time text is worth: words separated by single blanks, read as pairs
/// of a number and a unit. 1 takes the singular ("Day", "Hour", "Minute"), every other number the
/// plural; a pair that breaks this adds nothing, and so does a text of one word.
qint64 stringToSeconds(const QString& text);

/// A remark on a text that is worth something else than it seems to say: "adds nothing", "counts as
/// 5 minutes", "lies in the past". "" when all of it counts.
QString quickTimeRemark(const QString& text);
/// "1 day 2 hours 5 minutes". Nothing for less than a minute.
QString durationText(qint64 seconds);

} // namespace tockwise
