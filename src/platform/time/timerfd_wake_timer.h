// The alarm on the wall clock, with the kernel's timer: it needs no second timer to notice that
// the clock was set, and it is as exact as the kernel's clock.
#pragma once

#include "platform/time/zone_watch.h"
#include "ports/wake_timer.h"

#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <optional>

namespace tockwise {

/// Main thread; needs an event loop.
class TimerfdWakeTimer final : public WakeTimer {
  Q_OBJECT
 public:
  /// zoneFolder: where the system keeps localtime.
  explicit TimerfdWakeTimer(const QString& zoneFolder = QStringLiteral("/etc"),
                            QObject* parent = nullptr);
  ~TimerfdWakeTimer() override;
  Q_DISABLE_COPY_MOVE(TimerfdWakeTimer)

  /// A date that is no number disarms. One farther than the kernel can count is as good as never.
  void arm(Date when) override;
  void disarm() override;

 private:
  void set();
  void read();

  int m_descriptor = -1;
  std::unique_ptr<QSocketNotifier> m_notifier;
  std::optional<Date> m_when;
  ZoneWatch m_zoneWatch;
};

} // namespace tockwise
