#include "base/clock.h"

#include <chrono>

namespace tockwise {

Date SystemClock::now() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date::fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

std::chrono::milliseconds systemSteadyTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace tockwise
