// When to tick. The rules speak of a tick every second; this ticks when a tick could matter, and
// has the same effect: at the start, at the moment at which something falls due or could be
// allowed, at every whole second while something that is seen counts, at once when the queue, a
// setting, the store file, the clock, the zone or the power state changes, and once a minute
// whatever happens.
#pragma once

#include "base/clock.h"
#include "engine/tick.h"
#include "ports/power_events.h"
#include "ports/wake_timer.h"

#include <QObject>

#include <chrono>
#include <functional>

namespace tockwise {

/// Main thread. Everything given must outlive it.
class TickTimer final : public QObject {
  Q_OBJECT
 public:
  /// After waking nothing fires for this long.
  static constexpr std::chrono::seconds kHoldAfterWake{20};
  /// The longest time between two ticks, seconds.
  static constexpr double kLongestPause = 60;

  /// Runs a function once, a span of steady time later (setting the clock neither lengthens nor
  /// shortens it), unless the context object is gone by then.
  using SingleShot =
      std::function<void(std::chrono::milliseconds, QObject*, std::function<void()>)>;
  /// QTimer's.
  static SingleShot systemSingleShot();

  TickTimer(Tick& tick, WakeTimer& wakeTimer, PowerEvents& powerEvents, const Clock& clock,
            SingleShot singleShot = systemSingleShot(), QObject* parent = nullptr);

  /// Ticks at once and goes on from there. Call it once.
  void start();
  /// Nothing ticks any more, whatever happens: the program ends, and what falls due meanwhile is
  /// the next start's.
  void stop();

  /// Something that a tick looks at has changed: ticks as soon as the event loop runs again, once
  /// for any number of calls. Nothing before start() and while the machine is about to sleep.
  void poke();

  /// On while a menu is open or a count on the icon changes: a tick at every whole second.
  void setEverySecond(bool on);
  /// On while nothing may tick (a print preview is open): what falls due waits. Off ticks at once,
  /// unless the machine is about to sleep; within the hold after waking nothing fires even then.
  void hold(bool on);

 Q_SIGNALS:
  /// A tick has run; what is shown may be refreshed.
  void ticked();

 private:
  enum class State { Stopped, Running, Asleep };
  bool mayTick() const;
  void tickNow();
  void arm();
  void onWillSleep();
  void onDidWake();
  void endHold(int hold);

  Tick& m_tick;
  WakeTimer& m_wakeTimer;
  const Clock& m_clock;
  SingleShot m_singleShot;
  State m_state = State::Stopped;
  bool m_everySecond = false;
  bool m_held = false;
  bool m_poked = false;
  bool m_missed = false; // a tick fell into a running one and did nothing
  int m_hold = 0;        // counts wakes; only the hold of the last one ends the waiting
};

} // namespace tockwise
