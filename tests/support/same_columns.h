// Queues compared by what they hold.
#pragma once

#include "store/reminder_queue.h"

#include <tuple>

namespace tockwise {

/// Whether every column of the one holds what that of the other holds.
inline bool sameColumns(const Columns& one, const Columns& other) {
  bool same = true;
  std::apply(
      [&](const auto&... field) {
        ((same = same && (one.*(field.first)).values() == (other.*(field.first)).values()), ...);
      },
      kFields);
  return same;
}

} // namespace tockwise
