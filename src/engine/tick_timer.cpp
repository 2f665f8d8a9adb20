#include "engine/tick_timer.h"

#include "base/log.h"

#include <QTimer>

#include <algorithm>
#include <cmath>

namespace tockwise {

TickTimer::SingleShot TickTimer::systemSingleShot() {
  return [](std::chrono::milliseconds span, QObject* context, std::function<void()> work) {
    QTimer::singleShot(span, Qt::PreciseTimer, context, std::move(work));
  };
}

TickTimer::TickTimer(Tick& tick, WakeTimer& wakeTimer, PowerEvents& powerEvents, const Clock& clock,
                     SingleShot singleShot, QObject* parent)
    : QObject(parent),
      m_tick(tick),
      m_wakeTimer(wakeTimer),
      m_clock(clock),
      m_singleShot(std::move(singleShot)) {
  connect(&wakeTimer, &WakeTimer::expired, this, &TickTimer::tickNow);
  connect(&wakeTimer, &WakeTimer::clockChanged, this, &TickTimer::tickNow);
  connect(&powerEvents, &PowerEvents::willSleep, this, &TickTimer::onWillSleep);
  connect(&powerEvents, &PowerEvents::didWake, this, &TickTimer::onDidWake);
}

void TickTimer::start() {
  m_state = State::Running;
  tickNow();
}

void TickTimer::stop() {
  m_state = State::Stopped;
  m_wakeTimer.disarm();
}

void TickTimer::poke() {
  if (m_poked || !mayTick())
    return;
  m_poked = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (std::exchange(m_poked, false))
          tickNow();
      },
      Qt::QueuedConnection);
}

void TickTimer::setEverySecond(bool on) {
  if (m_everySecond == on)
    return;
  m_everySecond = on;
  if (mayTick())
    arm();
}

bool TickTimer::mayTick() const {
  return m_state == State::Running && !m_held;
}

void TickTimer::tickNow() {
  if (!mayTick())
    return;
  m_poked = false; // this tick sees what the pokes were about
  const bool isNested = m_tick.isRunning();
  m_missed = isNested;
  m_tick.run();
  Q_EMIT ticked();
  if (mayTick())
    arm();
  if (!isNested && m_missed)
    poke();
}

void TickTimer::arm() {
  const Date now = m_clock.now();
  Date next = now.plusSeconds(kLongestPause);
  if (m_everySecond)
    next = {std::floor(now.seconds) + 1};
  if (const auto moment = m_tick.nextMoment())
    next = std::min(next, *moment);
  m_wakeTimer.arm(next);
}

void TickTimer::onWillSleep() {
  if (m_state != State::Running)
    return;
  m_state = State::Asleep;
  m_wakeTimer.disarm();
}

void TickTimer::onDidWake() {
  if (m_state == State::Stopped)
    return;
  m_state = State::Running;
  m_tick.setWait(true);
  m_singleShot(kHoldAfterWake, this, [this, hold = ++m_hold] { endHold(hold); });
  tickNow();
}

void TickTimer::endHold(int hold) {
  if (hold != m_hold)
    return;
  logLine(QStringLiteral("Set Wait to NO"));
  m_tick.setWait(false);
  tickNow();
}

void TickTimer::hold(bool on) {
  if (m_held == on)
    return;
  m_held = on;
  if (on)
    m_wakeTimer.disarm();
  else
    tickNow();
}

} // namespace tockwise
