// The grammar of quick times: "1 Day 2 Hours".
#pragma once

#include <QString>

namespace tockwise {

/// The seconds that a quick-time text is worth: words separated by single blanks, read as pairs
/// of a number and a unit. 1 takes the singular ("Day", "Hour", "Minute"), every other number the
/// plural; a pair that breaks this adds nothing, and so does a text of one word.
qint64 stringToSeconds(const QString& text);

} // namespace tockwise
