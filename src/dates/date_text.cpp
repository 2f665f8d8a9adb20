#include "dates/date_text.h"

#include "dates/civil.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tockwise {
namespace {

Error noSuchDate(QStringView text) {
  return Error{Error::Kind::Usage, QStringLiteral("there is no such date: %1").arg(text)};
}

/// The form with 0 for every digit: "2025-03-04 09:05" looks like it, and nothing else.
bool looksLike(QStringView text, QStringView form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(),
                    [](QChar c, QChar f) { return f == u'0' ? c >= u'0' && c <= u'9' : c == f; });
}

int number(QStringView text, qsizetype at, qsizetype length) {
  int value = 0;
  for (const QChar digit : text.mid(at, length))
    value = value * 10 + (digit.unicode() - u'0');
  return value;
}

} // namespace

Result<Date> parseLocalDateTime(QStringView text, const Calendar& calendar) {
  if (!looksLike(text, u"0000-00-00 00:00"))
    return Error{Error::Kind::Usage,
                 QStringLiteral("a date is written YYYY-MM-DD HH:MM, not %1").arg(text)};
  const int year = number(text, 0, 4);
  const int month = number(text, 5, 2);
  const int day = number(text, 8, 2);
  const int hour = number(text, 11, 2);
  const int minute = number(text, 14, 2);
  if (year < 1 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) ||
      hour > 23 || minute > 59)
    return noSuchDate(text);
  return calendar.dateWithYear(year, month, day, hour, minute, 0);
}

QString iso8601UTC(Date date) {
  if (std::isnan(date.seconds))
    return {};
  constexpr double kFarthest = 9e12; // seconds; some 285,000 years
  const double clamped = std::clamp(date.seconds, -kFarthest, kFarthest);
  const double whole = std::floor(clamped);
  auto seconds = qint64(whole) + qint64(Date::kUnixOffset);
  auto micros = qint64(std::llround((clamped - whole) * 1e6));
  if (micros == 1000000) {
    micros = 0;
    ++seconds;
  }
  const qint64 days = floorDivide(seconds, kSecondsPerDay);
  const qint64 ofDay = floorModulo(seconds, kSecondsPerDay);
  const CivilDay civil = civilFromDays(days);
  const QString year = civil.year >= 0 && civil.year <= 9999
                           ? QString::asprintf("%04lld", civil.year)
                           : QString::asprintf("%+07lld", civil.year);
  return year + QString::asprintf("-%02d-%02dT%02d:%02d:%02d.%06lldZ", civil.month, civil.day,
                                  int(ofDay / kSecondsPerHour), int(ofDay / 60 % 60),
                                  int(ofDay % 60), micros);
}

} // namespace tockwise
