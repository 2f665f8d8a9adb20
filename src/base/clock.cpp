#include "base/clock.h"

#include <chrono>

namespace tockwise {

Date SystemClock::now() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date::fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

} // namespace tockwise
