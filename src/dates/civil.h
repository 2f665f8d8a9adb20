// The Gregorian calendar of days, without zones: proleptic, so that one rule serves all years.
#pragma once

#include <QtGlobal>

namespace tockwise {

inline constexpr qint64 kSecondsPerMinute = 60;
inline constexpr qint64 kSecondsPerHour = 3600;
inline constexpr qint64 kSecondsPerDay = 86400;

struct CivilDay {
  qint64 year = 1970;
  int month = 1; // 1 to 12
  int day = 1;   // 1 to 31

  friend bool operator==(const CivilDay&, const CivilDay&) = default;
};

/// Quotient rounded towards minus infinity. divisor > 0.
constexpr qint64 floorDivide(qint64 value, qint64 divisor) {
  return value >= 0 ? value / divisor : -((-1 - value) / divisor) - 1;
}

/// What floorDivide leaves: 0 to divisor - 1.
constexpr qint64 floorModulo(qint64 value, qint64 divisor) {
  return value - floorDivide(value, divisor) * divisor;
}

constexpr bool isLeapYear(qint64 year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

/// month: 1 to 12.
constexpr int daysInMonth(qint64 year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : kDays[month - 1];
}

/// Days since 1970-01-01. The year begins in March here, so that the leap day comes last.
constexpr qint64 daysFromCivil(CivilDay civil) {
  const qint64 year = civil.month > 2 ? civil.year : civil.year - 1;
  const qint64 era = floorDivide(year, 400);
  const qint64 yearOfEra = year - era * 400;
  const qint64 dayOfYear =
      (153 * (civil.month + (civil.month > 2 ? -3 : 9)) + 2) / 5 + civil.day - 1;
  const qint64 dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

/// The inverse of daysFromCivil.
constexpr CivilDay civilFromDays(qint64 days) {
  const qint64 shifted = days + 719468;
  const qint64 era = floorDivide(shifted, 146097);
  const qint64 dayOfEra = shifted - era * 146097;
  const qint64 yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const qint64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const qint64 monthFromMarch = (5 * dayOfYear + 2) / 153;
  const int month = int(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month,
          int(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1)};
}

/// 0 = Sunday to 6 = Saturday, of a day counted from 1970-01-01 (a Thursday).
constexpr int weekdayOfDays(qint64 days) {
  return int(floorModulo(days + 4, 7));
}

} // namespace tockwise
