// All calendar arithmetic and date display of the program: the Gregorian calendar in the user's
// time zone and locale, over ICU.
#pragma once

#include "base/date.h"

#include <QString>

#include <memory>

namespace tockwise {

/// The one pattern that dates are shown with in the menu, in mail and in tool tips.
inline constexpr char16_t kDisplayPattern[] = u"EEE M/d/yyyy hh:mm a";

/// A distance split into calendar units. All figures have the same sign (or are 0), each is what
/// remains after the larger units; there are no weeks, days are whole (a distance of ten days says
/// ten days).
struct DateDifference {
  qint64 years = 0;
  qint64 months = 0;
  qint64 days = 0;
  qint64 hours = 0;
  qint64 minutes = 0;
  qint64 seconds = 0;

  friend bool operator==(const DateDifference&, const DateDifference&) = default;
};

/// A wall-clock time in the calendar's zone.
struct DateComponents {
  int year = 1;    // Gregorian year
  int month = 1;   // 1 to 12
  int day = 1;     // 1 to 31
  int hour = 0;    // 0 to 23
  int minute = 0;  // 0 to 59
  int second = 0;  // 0 to 59
  int weekday = 0; // 0 = Sunday to 6 = Saturday; ignored where components make a date

  friend bool operator==(const DateComponents&, const DateComponents&) = default;
};

/// The calendar of one time zone and one locale. Cheap to ask, dear to make: take current().
/// Main thread, or any one thread per object.
class Calendar {
 public:
  /// zone: an IANA identifier, or a rule as TZ may hold it ("CET-1CEST,M3.5.0,M10.5.0/3"); an
  /// unknown one is UTC. locale: an ICU identifier ("en_US").
  Calendar(const QString& zone, const QString& locale);
  ~Calendar();
  Calendar(Calendar&&) noexcept;
  Calendar& operator=(Calendar&&) noexcept;

  /// The calendar of the user's zone and locale as they are now: the system is asked at each
  /// call (TZ, else /etc/localtime; LC_ALL, LC_TIME, LANG), and the object made anew when one of
  /// them has changed. About a microsecond, and no allocation, while nothing changes. The
  /// reference is valid until the next call. One object per thread.
  static const Calendar& current();

  /// Tells calendars apart: no two made in this process have the same number. What was computed
  /// with one calendar holds while current() has this number.
  quint64 identity() const;

  QString timeZone() const;
  QString locale() const;

  /// A Unicode date pattern; text in the calendar's locale and zone. "" for a date that is no
  /// number.
  QString dateStringWithFormat(Date date, QStringView pattern) const;

  /// date moved by all six amounts, largest first, as the calendar does: a month added to
  /// 31 January gives the last day of February, a day across a clock change keeps the wall time
  /// (of one that the clock skips, the time as far after the change; of one that it shows twice,
  /// the first). Hours, minutes and seconds are exact. Negative amounts move it back; the fraction
  /// of the second stays. Amounts of any size: the result stops at the calendar's ends, some
  /// 285,000 years away. All amounts 0, or a date that is no number: date itself.
  Date dateByIncrementingYears(Date date, qint64 years, qint64 months, qint64 days, qint64 hours,
                               qint64 minutes, qint64 seconds) const;

  /// The distance from other to date: positive when date is the later one. Counted between whole
  /// seconds, as the clock shows them (the fraction is cut off both instants): a fire date of
  /// 9:00:40 is 40 seconds away all through 9:00:00, 39 through 9:00:01, and 0 from 9:00:40 on.
  /// Added to other's whole second, largest unit first, the six figures give that of date.
  DateDifference differenceSinceDate(Date date, Date other) const;

  DateComponents components(Date date) const;

  /// The moment of the zone's next clock change: days added to date that stay before it are
  /// exactly 86400 seconds each. Never later than the calendar's end.
  Date offsetHoldsUntil(Date date) const;

  /// The instant of a wall-clock time: of a time that the clock skips, the one as far after the
  /// change; of one that it shows twice, the first. Figures beyond their range carry over
  /// (hour 24 is midnight of the next day).
  Date dateWithYear(int year, int month, int day, int hour, int minute, int second) const;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
