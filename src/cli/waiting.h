// How long a command waits for another program.
#pragma once

#include <QtGlobal>

namespace tockwise {

inline constexpr qint64 kPatience = 10000;  // ms, for one that starts, ends or holds the store
inline constexpr unsigned long kPause = 10; // ms between two looks

} // namespace tockwise
