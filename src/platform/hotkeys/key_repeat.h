// Tells a key that is pressed from one that repeats because it is held down.
#pragma once

#include <cstdint>
#include <optional>

namespace tockwise {

/// Any one thread. Fed with the presses and releases of grabbed keys in their order. Where the
/// server sends releases between repetitions, such a release bears the time of the press that
/// follows it.
class KeyRepeat {
 public:
  /// Whether the key was pressed anew. time: the server's, in milliseconds, which wraps.
  bool isNewPress(uint8_t code, uint32_t time) {
    const bool isHeld = m_held && m_held->code == code && time - m_held->time < kForgotten;
    const bool wentOn = m_released && m_released->code == code && m_released->time == time;
    m_held = Moment{code, time};
    m_released.reset();
    return !isHeld && !wentOn;
  }

  void release(uint8_t code, uint32_t time) {
    if (m_held && m_held->code == code)
      m_held.reset();
    m_released = Moment{code, time};
  }

 private:
  struct Moment {
    uint8_t code;
    uint32_t time;
  };
  // A release can get lost when another program takes the keyboard. No keyboard waits that long
  // before it repeats a key.
  static constexpr uint32_t kForgotten = 5000; // ms

  std::optional<Moment> m_held;
  std::optional<Moment> m_released;
};

} // namespace tockwise
