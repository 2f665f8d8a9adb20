#include "dates/calendar.h"

#include "dates/civil.h"
#include "dates/icu_text.h"
#include "dates/posix_zone.h"
#include "dates/user_environment.h"
#include "dates/zone_offsets.h"

#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace tockwise {
namespace {

// The calendar's ends. ICU reaches farther, and 64-bit seconds much farther, so that sums of
// clamped figures cannot overflow.
constexpr qint64 kFarthest = 9'000'000'000'000; // seconds from 1970; some 285,000 years
constexpr qint64 kMostMonths = qint64(12) * 600'000;
constexpr qint64 kMostDays = 2 * kFarthest / kSecondsPerDay + 1;
constexpr qint64 kMostSeconds = 2 * kFarthest + 1;

// Pure Gregorian: the earliest change from the Julian calendar that ICU can hold.
constexpr double kNoJulianYears = double(std::numeric_limits<qint32>::min()) * 86400000.0;

qint64 clampedInstant(qint64 instant) {
  return std::clamp(instant, -kFarthest, kFarthest);
}

qint64 wholeSeconds(Date date) {
  return qint64(std::clamp(std::floor(date.seconds) + Date::kUnixOffset, double(-kFarthest),
                           double(kFarthest)));
}

Date dateOf(qint64 instant, double fraction = 0) {
  return {double(instant - qint64(Date::kUnixOffset)) + fraction};
}

quint64 nextIdentity() {
  static std::atomic<quint64> count{0};
  return ++count;
}

} // namespace

class Calendar::Private {
 public:
  Private(const QString& zoneName, const QString& localeName)
      : zone(zoneName), locale(localeName), timeZone(zoneNamed(zoneName)), offsets(*timeZone) {}

  /// Made when it is first needed: it reads the tables of all locales, and most days need none.
  icu::GregorianCalendar& calendar() {
    if (!m_calendar) {
      UErrorCode status = U_ZERO_ERROR;
      m_calendar = std::make_unique<icu::GregorianCalendar>(*timeZone, icuLocale(), status);
      m_calendar->setGregorianChange(kNoJulianYears, status);
      m_calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    }
    return *m_calendar;
  }

  icu::Locale icuLocale() const { return icu::Locale(locale.toLatin1().constData()); }

  icu::SimpleDateFormat& formatFor(QStringView pattern) {
    for (const auto& [known, format] : formats) {
      if (known == pattern)
        return *format;
    }
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(toIcu(pattern), icuLocale(), status);
    formats.emplace_back(pattern.toString(), std::move(format));
    return *formats.back().second;
  }

  /// The instant of a wall time that no clock change touches, else nothing. hint: the offset
  /// that it probably has.
  bool settledInstant(qint64 wall, qint64 hint, qint64& instant) {
    const OffsetSpan& span = offsets.at(wall - hint);
    instant = wall - span.offset;
    if (span.isSettled(instant))
      return true;
    const OffsetSpan& neighbour = offsets.at(instant);
    instant = wall - neighbour.offset;
    return neighbour.isSettled(instant);
  }

  /// The calendar's own addition, for what the arithmetic here leaves to it.
  qint64 addByCalendar(qint64 instant, UCalendarDateFields field, qint64 amount) {
    UErrorCode status = U_ZERO_ERROR;
    calendar().setTime(double(instant) * 1000, status);
    calendar().add(field, int32_t(amount), status);
    return clampedInstant(std::llround(calendar().getTime(status) / 1000));
  }

  qint64 addMonths(qint64 instant, qint64 months, UCalendarDateFields field) {
    if (months == 0)
      return instant;
    const OffsetSpan span = offsets.at(instant);
    const qint64 wall = instant + span.offset;
    const CivilDay from = civilFromDays(floorDivide(wall, kSecondsPerDay));
    const qint64 count = from.year * 12 + from.month - 1 + months;
    CivilDay to{floorDivide(count, 12), int(floorModulo(count, 12)) + 1, 0};
    to.day = std::min(from.day, daysInMonth(to.year, to.month));
    const qint64 target = daysFromCivil(to) * kSecondsPerDay + floorModulo(wall, kSecondsPerDay);
    if (std::llabs(target) >= kFarthest)
      return clampedInstant(target);
    qint64 result = 0;
    if (settledInstant(target, span.offset, result))
      return result;
    return addByCalendar(instant, field, field == UCAL_MONTH ? months : months / 12);
  }

  qint64 addYears(qint64 instant, qint64 years) {
    return addMonths(instant, 12 * years, UCAL_EXTENDED_YEAR);
  }

  qint64 addDays(qint64 instant, qint64 days) {
    const OffsetSpan from = offsets.at(instant);
    const qint64 plain = instant + days * kSecondsPerDay;
    if (from.holds(plain) || std::llabs(plain) >= kFarthest)
      return clampedInstant(plain);
    qint64 result = 0;
    if (settledInstant(plain + from.offset, from.offset, result)) {
      // Where a zone jumped by whole days, the calendar counts days that there were.
      if (std::llabs(offsets.at(result).offset - from.offset) < kSecondsPerDay)
        return result;
    }
    return addByCalendar(instant, UCAL_DAY_OF_MONTH, days);
  }

  /// How many units fit between position and target, counted from position (never past target);
  /// moves position by them. guess: near the answer.
  template <typename Add>
  static qint64 takeUnits(qint64& position, qint64 target, qint64 guess, Add&& add) {
    const qint64 step = target >= position ? 1 : -1;
    const auto isPast = [&](qint64 instant) {
      return step > 0 ? instant > target : instant < target;
    };
    qint64 count = guess * step > 0 ? guess : 0;
    qint64 reached = count == 0 ? position : add(position, count);
    while (count != 0 && isPast(reached)) {
      count -= step;
      reached = count == 0 ? position : add(position, count);
    }
    for (;;) {
      const qint64 next = add(position, count + step);
      if (isPast(next) || next == reached)
        break;
      count += step;
      reached = next;
    }
    position = reached;
    return count;
  }

  /// Months from one wall time to another, rounded towards 0 as if every month had every day.
  qint64 roughMonths(qint64 from, qint64 to) {
    const auto split = [this](qint64 instant) {
      const qint64 wall = instant + offsets.at(instant).offset;
      const CivilDay civil = civilFromDays(floorDivide(wall, kSecondsPerDay));
      return std::pair{civil.year * 12 + civil.month,
                       civil.day * kSecondsPerDay + floorModulo(wall, kSecondsPerDay)};
    };
    const auto [fromMonth, fromRest] = split(from);
    const auto [toMonth, toRest] = split(to);
    qint64 months = toMonth - fromMonth;
    if (to >= from && toRest < fromRest)
      --months;
    else if (to < from && toRest > fromRest)
      ++months;
    return months;
  }

  QString zone;
  QString locale;
  quint64 identity = nextIdentity();
  std::unique_ptr<icu::BasicTimeZone> timeZone;
  ZoneOffsets offsets;
  std::vector<std::pair<QString, std::unique_ptr<icu::SimpleDateFormat>>> formats;

 private:
  std::unique_ptr<icu::GregorianCalendar> m_calendar;
};

Calendar::Calendar(const QString& zone, const QString& locale)
    : d(std::make_unique<Private>(zone, locale)) {}

Calendar::~Calendar() = default;
Calendar::Calendar(Calendar&&) noexcept = default;
Calendar& Calendar::operator=(Calendar&&) noexcept = default;

const Calendar& Calendar::current() {
  thread_local UserEnvironment environment;
  thread_local std::unique_ptr<Calendar> calendar;
  if (environment.refresh() || !calendar)
    calendar = std::make_unique<Calendar>(environment.zone(), environment.locale());
  return *calendar;
}

quint64 Calendar::identity() const {
  return d->identity;
}

QString Calendar::timeZone() const {
  return d->zone;
}

QString Calendar::locale() const {
  return d->locale;
}

QString Calendar::dateStringWithFormat(Date date, QStringView pattern) const {
  if (std::isnan(date.seconds))
    return {};
  UErrorCode status = U_ZERO_ERROR;
  // With a calendar of ours the format need not copy its own at each call.
  d->calendar().setTime(double(wholeSeconds(date)) * 1000 +
                            std::floor((date.seconds - std::floor(date.seconds)) * 1000),
                        status);
  icu::UnicodeString text;
  icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
  d->formatFor(pattern).format(d->calendar(), text, position);
  return fromIcu(text);
}

Date Calendar::dateByIncrementingYears(Date date, qint64 years, qint64 months, qint64 days,
                                       qint64 hours, qint64 minutes, qint64 seconds) const {
  if (std::isnan(date.seconds) ||
      (years == 0 && months == 0 && days == 0 && hours == 0 && minutes == 0 && seconds == 0))
    return date;
  const auto limited = [](qint64 amount, qint64 most) { return std::clamp(amount, -most, most); };
  qint64 instant = wholeSeconds(date);
  const double floor = std::floor(date.seconds);
  const double fraction = std::isfinite(date.seconds) ? date.seconds - floor : 0;
  instant = d->addYears(instant, limited(years, kMostMonths / 12));
  instant = d->addMonths(instant, limited(months, kMostMonths), UCAL_MONTH);
  instant = d->addDays(instant, limited(days, kMostDays));
  for (const auto& [amount, unit] :
       {std::pair{hours, kSecondsPerHour}, {minutes, kSecondsPerMinute}, {seconds, qint64(1)}})
    instant = clampedInstant(instant + limited(amount, kMostSeconds / unit) * unit);
  return dateOf(instant, fraction);
}

DateDifference Calendar::differenceSinceDate(Date date, Date other) const {
  if (std::isnan(date.seconds) || std::isnan(other.seconds))
    return {};
  qint64 position = wholeSeconds(other);
  const qint64 target = wholeSeconds(date);
  DateDifference difference;
  const qint64 months = d->roughMonths(position, target);
  if (std::llabs(months) >= 11) {
    difference.years = d->takeUnits(position, target, months / 12,
                                    [this](qint64 from, qint64 n) { return d->addYears(from, n); });
  }
  difference.months =
      d->takeUnits(position, target, months - 12 * difference.years,
                   [this](qint64 from, qint64 n) { return d->addMonths(from, n, UCAL_MONTH); });
  difference.days = d->takeUnits(position, target, (target - position) / kSecondsPerDay,
                                 [this](qint64 from, qint64 n) { return d->addDays(from, n); });
  const qint64 rest = target - position;
  difference.hours = rest / kSecondsPerHour;
  difference.minutes = rest / kSecondsPerMinute % 60;
  difference.seconds = rest % 60;
  return difference;
}

DateComponents Calendar::components(Date date) const {
  if (std::isnan(date.seconds))
    return {};
  const qint64 instant = wholeSeconds(date);
  const qint64 wall = instant + d->offsets.at(instant).offset;
  const qint64 days = floorDivide(wall, kSecondsPerDay);
  const qint64 ofDay = floorModulo(wall, kSecondsPerDay);
  const CivilDay civil = civilFromDays(days);
  return {int(civil.year),
          civil.month,
          civil.day,
          int(ofDay / kSecondsPerHour),
          int(ofDay / kSecondsPerMinute % 60),
          int(ofDay % 60),
          weekdayOfDays(days)};
}

Date Calendar::offsetHoldsUntil(Date date) const {
  return dateOf(clampedInstant(d->offsets.at(wholeSeconds(date)).end));
}

Date Calendar::dateWithYear(int year, int month, int day, int hour, int minute, int second) const {
  const qint64 firstMonth = qint64(year) * 12 + month - 1;
  const CivilDay first{floorDivide(firstMonth, 12), int(floorModulo(firstMonth, 12)) + 1, 1};
  const qint64 wall = clampedInstant((daysFromCivil(first) + day - 1) * kSecondsPerDay +
                                     hour * kSecondsPerHour + minute * kSecondsPerMinute + second);
  qint64 instant = 0;
  if (d->settledInstant(wall, d->offsets.at(wall).offset, instant))
    return dateOf(instant);
  const CivilDay civil = civilFromDays(floorDivide(wall, kSecondsPerDay));
  const auto ofDay = int32_t(floorModulo(wall, kSecondsPerDay));
  UErrorCode status = U_ZERO_ERROR;
  icu::GregorianCalendar& calendar = d->calendar();
  calendar.clear();
  calendar.set(UCAL_EXTENDED_YEAR, int32_t(civil.year));
  calendar.set(UCAL_MONTH, civil.month - 1);
  calendar.set(UCAL_DAY_OF_MONTH, civil.day);
  calendar.set(UCAL_HOUR_OF_DAY, ofDay / 3600);
  calendar.set(UCAL_MINUTE, ofDay / 60 % 60);
  calendar.set(UCAL_SECOND, ofDay % 60);
  return dateOf(std::llround(calendar.getTime(status) / 1000));
}

} // namespace tockwise
