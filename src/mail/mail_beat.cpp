#include "mail/mail_beat.h"

#include "base/log.h"

#include <algorithm>

namespace tockwise {

MailBeat::MailBeat(const Settings& settings, QObject* parent, std::function<Time()> steadyTime)
    : QObject(parent), m_settings(settings), m_steadyTime(std::move(steadyTime)) {
  m_timer.setSingleShot(true);
  m_timer.setTimerType(Qt::PreciseTimer);
  connect(&m_timer, &QTimer::timeout, this, &MailBeat::beatAction);
}

void MailBeat::start() {
  if (!m_started)
    run();
}

void MailBeat::run() {
  m_started = true;
  m_start = m_steadyTime();
  m_period = period();
  m_usedBeats = 0;
  if (m_timer.isActive())
    awaitBeat();
}

void MailBeat::beatChanged() {
  const Time wanted = period();
  if (!m_started) {
    run();
  } else if (wanted != m_period) {
    m_kept = mailBeatFlag();
    run();
    logLine(QStringLiteral("Restarted beat"));
  }
  const double seconds = std::chrono::duration<double>(wanted).count();
  logLine(QStringLiteral("Time Interval: %1").arg(seconds, 0, 'f', 6));
}

void MailBeat::follow() {
  if (m_started && period() != m_period)
    beatChanged();
}

std::chrono::seconds MailBeat::period() const {
  constexpr qint64 kMost = 1'000'000; // months: beyond that there is no mail anyway
  const qint64 index = m_settings.integer(QStringLiteral("rateIndex"));
  return std::chrono::seconds(10) * (std::clamp<qint64>(index, 0, kMost) + 1);
}

qint64 MailBeat::beats() const {
  return m_started ? (m_steadyTime() - m_start) / m_period : 0;
}

bool MailBeat::mailBeatFlag() const {
  return m_kept || beats() > m_usedBeats;
}

void MailBeat::clearMailBeatFlag() {
  m_kept = false;
  m_usedBeats = beats();
}

void MailBeat::awaitBeat() {
  if (!m_started)
    return;
  m_awaitedBeat = beats() + 1;
  arm();
}

void MailBeat::arm() {
  constexpr Time kLongest = std::chrono::hours(1); // a timer's range is limited
  const Time left = m_start + m_awaitedBeat * m_period - m_steadyTime();
  m_timer.start(std::clamp(left, Time(0), kLongest));
}

void MailBeat::beatAction() {
  if (beats() < m_awaitedBeat)
    arm();
  else
    Q_EMIT beat();
}

} // namespace tockwise
