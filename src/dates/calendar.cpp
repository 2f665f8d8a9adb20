#include "dates/calendar.h"

#include <QFileInfo>
#include <QString>

#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace tockwise {
namespace {

icu::UnicodeString toIcu(QStringView text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), int32_t(text.size())};
}

QString fromIcu(const icu::UnicodeString& text) {
  return QString::fromUtf16(text.getBuffer(), text.length());
}

int32_t clampToInt(qint64 value) {
  return int32_t(std::clamp<qint64>(value, INT32_MIN, INT32_MAX));
}

QString currentZone() {
  QString zone = qEnvironmentVariable("TZ");
  if (zone.startsWith(u':'))
    zone.remove(0, 1);
  if (zone.isEmpty()) {
    const QString target = QFileInfo(QStringLiteral("/etc/localtime")).symLinkTarget();
    const qsizetype at = target.indexOf(u"zoneinfo/");
    if (at >= 0)
      zone = target.mid(at + 9);
  }
  return zone.isEmpty() ? QStringLiteral("UTC") : zone;
}

QString currentLocale() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const QString value = qEnvironmentVariable(variable);
    if (!value.isEmpty()) {
      const QString name = value.section(u'.', 0, 0).section(u'@', 0, 0);
      return name == u"C" || name == u"POSIX" ? QStringLiteral("en_US") : name;
    }
  }
  return QStringLiteral("en_US");
}

} // namespace

class Calendar::Private {
 public:
  QString zone;
  QString locale;
  std::unique_ptr<icu::GregorianCalendar> calendar;
  std::map<QString, std::unique_ptr<icu::SimpleDateFormat>> formats;
};

Calendar::Calendar(const QString& zone, const QString& locale) : d(std::make_unique<Private>()) {
  UErrorCode status = U_ZERO_ERROR;
  d->zone = zone;
  d->locale = locale;
  d->calendar = std::make_unique<icu::GregorianCalendar>(
      icu::TimeZone::createTimeZone(toIcu(zone)), icu::Locale(locale.toUtf8().constData()), status);
}

Calendar::~Calendar() = default;
Calendar::Calendar(Calendar&&) noexcept = default;
Calendar& Calendar::operator=(Calendar&&) noexcept = default;

const Calendar& Calendar::current() {
  thread_local std::unique_ptr<Calendar> calendar;
  const QString zone = currentZone();
  const QString locale = currentLocale();
  if (!calendar || calendar->timeZone() != zone || calendar->locale() != locale)
    calendar = std::make_unique<Calendar>(zone, locale);
  return *calendar;
}

QString Calendar::timeZone() const {
  return d->zone;
}

QString Calendar::locale() const {
  return d->locale;
}

QString Calendar::dateStringWithFormat(Date date, QStringView pattern) const {
  auto& format = d->formats[pattern.toString()];
  UErrorCode status = U_ZERO_ERROR;
  if (!format) {
    format = std::make_unique<icu::SimpleDateFormat>(
        toIcu(pattern), icu::Locale(d->locale.toUtf8().constData()), status);
    format->setTimeZone(d->calendar->getTimeZone());
  }
  icu::UnicodeString text;
  format->format(date.unixSeconds() * 1000, text);
  return fromIcu(text);
}

Date Calendar::dateByIncrementingYears(Date date, qint64 years, qint64 months, qint64 days,
                                       qint64 hours, qint64 minutes, qint64 seconds) const {
  UErrorCode status = U_ZERO_ERROR;
  auto& calendar = *d->calendar;
  const double whole = std::floor(date.unixSeconds());
  const double fraction = date.unixSeconds() - whole;
  calendar.setTime(whole * 1000, status);
  calendar.add(UCAL_YEAR, clampToInt(years), status);
  calendar.add(UCAL_MONTH, clampToInt(months), status);
  calendar.add(UCAL_DAY_OF_MONTH, clampToInt(days), status);
  calendar.add(UCAL_HOUR_OF_DAY, clampToInt(hours), status);
  calendar.add(UCAL_MINUTE, clampToInt(minutes), status);
  calendar.add(UCAL_SECOND, clampToInt(seconds), status);
  return Date::fromUnixSeconds(calendar.getTime(status) / 1000 + fraction);
}

DateDifference Calendar::differenceSinceDate(Date date, Date other) const {
  UErrorCode status = U_ZERO_ERROR;
  auto& calendar = *d->calendar;
  calendar.setTime(other.unixSeconds() * 1000, status);
  const UDate target = date.unixSeconds() * 1000;
  DateDifference difference;
  difference.years = calendar.fieldDifference(target, UCAL_YEAR, status);
  difference.months = calendar.fieldDifference(target, UCAL_MONTH, status);
  difference.days = calendar.fieldDifference(target, UCAL_DAY_OF_MONTH, status);
  difference.hours = calendar.fieldDifference(target, UCAL_HOUR_OF_DAY, status);
  difference.minutes = calendar.fieldDifference(target, UCAL_MINUTE, status);
  difference.seconds = calendar.fieldDifference(target, UCAL_SECOND, status);
  return difference;
}

DateComponents Calendar::components(Date date) const {
  UErrorCode status = U_ZERO_ERROR;
  auto& calendar = *d->calendar;
  calendar.setTime(std::floor(date.unixSeconds()) * 1000, status);
  return {calendar.get(UCAL_YEAR, status),       calendar.get(UCAL_MONTH, status) + 1,
          calendar.get(UCAL_DATE, status),       calendar.get(UCAL_HOUR_OF_DAY, status),
          calendar.get(UCAL_MINUTE, status),     calendar.get(UCAL_SECOND, status),
          calendar.get(UCAL_DAY_OF_WEEK, status) - UCAL_SUNDAY};
}

Date Calendar::dateWithYear(int year, int month, int day, int hour, int minute, int second) const {
  UErrorCode status = U_ZERO_ERROR;
  auto& calendar = *d->calendar;
  calendar.clear();
  calendar.set(year, month - 1, day, hour, minute, second);
  return Date::fromUnixSeconds(calendar.getTime(status) / 1000);
}

} // namespace tockwise
