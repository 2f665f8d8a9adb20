// The time of day, injected: nothing else in the program asks the system for it.
#pragma once

#include "base/date.h"

#include <chrono>

namespace tockwise {

class Clock {
 public:
  virtual ~Clock() = default;
  /// The wall clock's present instant. Any thread.
  virtual Date now() const = 0;
};

class SystemClock final : public Clock {
 public:
  Date now() const override;
};

/// The system's steady time: it only moves forward, whatever is done to the wall clock. For whoever
/// is given a source of it; any thread.
std::chrono::milliseconds systemSteadyTime();

/// A clock that stands where it was put; for tests.
class FakeClock final : public Clock {
 public:
  explicit FakeClock(Date start = {}) : m_now(start) {}
  Date now() const override { return m_now; }
  void set(Date date) { m_now = date; }
  void advance(double seconds) { m_now = m_now.plusSeconds(seconds); }

 private:
  Date m_now;
};

} // namespace tockwise
