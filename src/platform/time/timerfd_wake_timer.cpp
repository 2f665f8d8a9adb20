#include "platform/time/timerfd_wake_timer.h"

#include "base/log.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace tockwise {
namespace {

// Far enough for every alarm, near enough for the kernel's nanoseconds: some 120 years from 1970.
constexpr double kNever = 3'800'000'000;

/// The instant as the kernel counts it, at or just after when. All zeros would disarm: the past
/// becomes the first nanosecond.
timespec kernelTime(Date when) {
  // A clock read as a double may fall short of when by its rounding; a microsecond covers that.
  const double seconds = std::clamp(when.unixSeconds() + 1e-6, 0.0, kNever);
  timespec time{};
  time.tv_sec = time_t(seconds);
  time.tv_nsec = std::clamp(long(std::ceil((seconds - double(time.tv_sec)) * 1e9)), 1L, 999999999L);
  return time;
}

} // namespace

TimerfdWakeTimer::TimerfdWakeTimer(const QString& zoneFolder, QObject* parent)
    : WakeTimer(parent),
      m_descriptor(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      m_zoneWatch(zoneFolder) {
  connect(&m_zoneWatch, &ZoneWatch::zoneChanged, this, &WakeTimer::clockChanged);
  if (m_descriptor < 0) {
    logLine(QStringLiteral("No timer: %1").arg(QString::fromLocal8Bit(std::strerror(errno))));
    return;
  }
  m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
  connect(m_notifier.get(), &QSocketNotifier::activated, this, &TimerfdWakeTimer::read);
  set();
}

TimerfdWakeTimer::~TimerfdWakeTimer() {
  m_notifier.reset();
  if (m_descriptor >= 0)
    ::close(m_descriptor);
}

void TimerfdWakeTimer::arm(Date when) {
  if (std::isnan(when.seconds)) {
    disarm();
    return;
  }
  m_when = when;
  set();
}

void TimerfdWakeTimer::disarm() {
  m_when.reset();
  set();
}

/// Without an alarm the timer runs towards a moment that never comes: it still tells when the
/// clock is set.
void TimerfdWakeTimer::set() {
  itimerspec spec{};
  spec.it_value = kernelTime(m_when.value_or(Date::fromUnixSeconds(kNever)));
  // When the clock was set since the last read, the kernel says so here and sets nothing.
  for (int attempt = 0; m_descriptor >= 0 && attempt < 2; ++attempt) {
    if (::timerfd_settime(m_descriptor, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &spec,
                          nullptr) == 0)
      return;
    if (errno != ECANCELED)
      break;
    QMetaObject::invokeMethod(this, &WakeTimer::clockChanged, Qt::QueuedConnection);
  }
}

void TimerfdWakeTimer::read() {
  quint64 expirations = 0;
  const ssize_t length = ::read(m_descriptor, &expirations, sizeof expirations);
  if (length < 0 && errno == ECANCELED) {
    set();
    Q_EMIT clockChanged();
  } else if (length == sizeof expirations && m_when) {
    m_when.reset();
    Q_EMIT expired();
  }
}

} // namespace tockwise
