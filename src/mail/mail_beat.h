// The beat that paces outgoing mail: at most one message leaves per beat.
//
// Beats are counted from the clock, so that the beat costs nothing while no mail waits: whoever
// waits for the next one says so, and only then the program wakes up for it.
#pragma once

#include "base/clock.h"
#include "store/settings.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

namespace tockwise {

/// Main thread.
class MailBeat final : public QObject {
  Q_OBJECT
 public:
  using Time = std::chrono::milliseconds;
  /// settings must outlive it. steadyTime: time that only moves forward.
  explicit MailBeat(const Settings& settings, QObject* parent = nullptr,
                    std::function<Time()> steadyTime = systemSteadyTime);

  /// Starts beating with the period of rateIndex, when it does not beat yet.
  void start();
  /// Beats with the period of rateIndex from now on when it differs from the running one; logs the
  /// period.
  void beatChanged();
  /// As beatChanged() when it beats with another period than that of rateIndex.
  void follow();
  /// (rateIndex + 1) x 10 seconds; 10 seconds where rateIndex is absent or negative.
  std::chrono::seconds period() const;

  /// Whether a message may leave: a beat has come since the flag was cleared.
  bool mailBeatFlag() const;
  void clearMailBeatFlag();
  /// Emits beat() at the next beat, once. Asked for by whoever has mail waiting, again after each
  /// beat that it could not use.
  void awaitBeat();
  /// Whether beat() is still to come: the program will wake up for it.
  bool isAwaited() const { return m_timer.isActive(); }

 Q_SIGNALS:
  void beat();

 private:
  qint64 beats() const;
  void run();
  void arm();
  void beatAction();

  const Settings& m_settings;
  std::function<Time()> m_steadyTime;
  QTimer m_timer; // runs while a beat is awaited
  bool m_started = false;
  Time m_start{};           // of the running period
  Time m_period{};          // the running one
  bool m_kept = false;      // the flag as it was when the period changed
  qint64 m_usedBeats = 0;   // counted from m_start, when the flag was cleared
  qint64 m_awaitedBeat = 0; // counted from m_start
};

} // namespace tockwise
