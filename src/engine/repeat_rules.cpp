#include "engine/repeat_rules.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>

namespace tockwise {
namespace {

// Amounts as far as the calendar reaches; sums of a few of them cannot overflow.
constexpr qint64 kMostAmount = 100'000'000'000'000;

qint64 limited(qint64 amount) {
  return std::clamp(amount, -kMostAmount, kMostAmount);
}

/// The steps of one interval.
class Stepper {
 public:
  Stepper(const Interval& interval, const Calendar& calendar)
      : m_months(limited(interval[0])),
        m_days(limited(interval[1])),
        m_hours(limited(interval[2])),
        m_minutes(limited(interval[3])),
        m_calendar(calendar) {
    m_isSteady = m_months == 0 && m_days >= 0 && m_hours >= 0 && m_minutes >= 0;
    m_seconds = 86400.0 * double(m_days) + 3600.0 * double(m_hours) + 60.0 * double(m_minutes);
  }

  Date moved(Date date) const {
    return m_calendar.dateByIncrementingYears(date, 0, m_months, m_days, m_hours, m_minutes, 0);
  }

  /// date moved by as many steps as are known to be of equal length and to end before limit; one
  /// of them at least is left to the caller. Hours and minutes always are; days are while the
  /// zone's offset holds.
  Date movedCloseTo(Date limit, Date date) const {
    if (!m_isSteady || m_seconds <= 0)
      return date;
    const Date until = m_days == 0 ? limit : std::min(limit, m_calendar.offsetHoldsUntil(date));
    const double steps = std::floor((until.seconds - date.seconds) / m_seconds) - 1;
    if (!(steps >= 1))
      return date;
    const double most = std::floor(double(kMostAmount) / m_seconds);
    return m_calendar.dateByIncrementingYears(date, 0, 0, 0, 0, 0,
                                              qint64(std::min(steps, most) * m_seconds));
  }

 private:
  qint64 m_months;
  qint64 m_days;
  qint64 m_hours;
  qint64 m_minutes;
  const Calendar& m_calendar;
  bool m_isSteady = false;
  double m_seconds = 0;
};

} // namespace

bool isRepeatingReminder(const Interval& interval) {
  return interval != kBlankInterval;
}

QString reminderTypeString(const Interval& interval) {
  const auto [months, days, hours, minutes] = interval;
  if (months == 1)
    return QStringLiteral("every month");
  if (days == 1)
    return QStringLiteral("every day");
  if (days == 7)
    return QStringLiteral("every week");
  if (hours == 1)
    return QStringLiteral("every hour");
  if (minutes == 1)
    return QStringLiteral("every minute");
  return QStringLiteral("regular");
}

Date alertDate(Date fireDate, const Offset& offset, const Calendar& calendar) {
  if (offset == kBlankOffset)
    return fireDate;
  return calendar.dateByIncrementingYears(fireDate, 0, 0, -limited(offset[0]), -limited(offset[1]),
                                          -limited(offset[2]), 0);
}

Date earliestAlertDate(Date fireDate, const Offset& offset) {
  if (offset == kBlankOffset)
    return fireDate;
  // No zone is farther than a day from another, nor moves by more than one.
  constexpr double kMostShift = 2 * 86400.0;
  return fireDate.plusSeconds(-86400.0 * double(offset[0]) - 3600.0 * double(offset[1]) -
                              60.0 * double(offset[2]) - kMostShift);
}

Date nextFireDate(Date fireDate, const Interval& interval, Date now, const Calendar& calendar) {
  // Only figures of mixed signs and months missed for a hundred thousand years come near this.
  constexpr int kMostSteps = 2'000'000;
  const Stepper stepper(interval, calendar);
  Date next = stepper.moved(fireDate);
  if (!(next > fireDate))
    return next;
  for (int step = 0; next < now && step < kMostSteps; ++step) {
    next = stepper.movedCloseTo(now, next);
    const Date following = stepper.moved(next);
    if (!(following > next))
      break;
    next = following;
  }
  return next;
}

bool checkExtra(const Extra& extra, Date now, const Calendar& calendar) {
  constexpr qint64 kMost = 1'000'000; // hours or minutes of a time that damaged data may hold
  const DateComponents today = calendar.components(now);
  const auto timeOfToday = [&](qint64 hour, qint64 minute) {
    return calendar.dateWithYear(today.year, today.month, today.day,
                                 int(std::clamp(hour, -kMost, kMost)),
                                 int(std::clamp(minute, -kMost, kMost)), 0);
  };
  if (!extra.days[size_t(today.weekday)])
    return false;
  const Date start = timeOfToday(extra.times[0], extra.times[1]);
  const Date end = timeOfToday(extra.times[2], extra.times[3]);
  if (start == end)
    return true;
  return now > start && now < end;
}

std::optional<Date> nextMomentAllowed(const Extra& extra, Date now, const Calendar& calendar) {
  constexpr int kDaysAhead = 15; // a weekday comes every week, unless the zone skips it once
  if (!std::isfinite(now.seconds) ||
      std::none_of(extra.days.begin(), extra.days.end(), [](bool allowed) { return allowed; }))
    return std::nullopt;
  const Date soonest{std::floor(now.seconds) + 1};
  const DateComponents today = calendar.components(soonest);
  for (int day = 0; day < kDaysAhead; ++day) {
    const auto timeOfDay = [&](qint64 hour, qint64 minute) {
      return calendar.dateWithYear(today.year, today.month, today.day + day,
                                   int(std::clamp<qint64>(hour, 0, 24)),
                                   int(std::clamp<qint64>(minute, 0, 60)), 0);
    };
    // What is allowed begins with the day or, strictly, after the window's start.
    const Date midnight = timeOfDay(0, 0);
    const Date inside = timeOfDay(extra.times[0], extra.times[1]).plusSeconds(1);
    for (const Date begin : {midnight, inside}) {
      const Date candidate = std::max(begin, soonest);
      if (checkExtra(extra, candidate, calendar))
        return candidate;
    }
  }
  return std::nullopt;
}

} // namespace tockwise
