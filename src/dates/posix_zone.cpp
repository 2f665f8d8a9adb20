#include "dates/posix_zone.h"

#include "base/log.h"
#include "dates/civil.h"
#include "dates/icu_text.h"

#include <QString>

#include <unicode/simpletz.h>
#include <unicode/timezone.h>

#include <array>
#include <cstdlib>
#include <optional>

namespace tockwise {
namespace {

/// A day of the year at which the clock changes, as SimpleTimeZone wants it.
struct ChangeRule {
  int month = 1;             // 1 to 12
  int day = 1;               // 1 to 31
  int weekday = -1;          // 0 = Sunday; -1: that day whatever its weekday
  bool onOrAfter = true;     // the weekday on or after day, else on or before it
  qint64 secondOfDay = 7200; // 0 to 86400, local time before the change
};

class RuleParser {
 public:
  explicit RuleParser(QStringView text) : m_rest(text) {}

  bool atEnd() const { return m_rest.isEmpty(); }

  bool take(char16_t character) {
    if (!m_rest.startsWith(QChar(character)))
      return false;
    m_rest = m_rest.mid(1);
    return true;
  }

  bool takeName() {
    qsizetype length = 0;
    if (take(u'<')) {
      length = m_rest.indexOf(u'>');
      if (length < 3)
        return false;
      m_rest = m_rest.mid(length + 1);
      return true;
    }
    while (length < m_rest.size() && isLetter(m_rest[length]))
      ++length;
    m_rest = m_rest.mid(length);
    return length >= 3;
  }

  std::optional<int> takeNumber(int least, int most) {
    int value = 0;
    qsizetype length = 0;
    while (length < m_rest.size() && length < 4 && m_rest[length] >= u'0' && m_rest[length] <= u'9')
      value = value * 10 + (m_rest[length++].unicode() - u'0');
    if (length == 0 || value < least || value > most)
      return std::nullopt;
    m_rest = m_rest.mid(length);
    return value;
  }

  /// [+-]hh[:mm[:ss]] in seconds.
  std::optional<qint64> takeTime(int mostHours) {
    const bool negative = take(u'-');
    if (!negative)
      take(u'+');
    const auto hours = takeNumber(0, mostHours);
    if (!hours)
      return std::nullopt;
    qint64 seconds = *hours * kSecondsPerHour;
    for (const qint64 unit : {kSecondsPerMinute, qint64(1)}) {
      if (!take(u':'))
        break;
      const auto part = takeNumber(0, 59);
      if (!part)
        return std::nullopt;
      seconds += *part * unit;
    }
    return negative ? -seconds : seconds;
  }

  /// Mm.w.d or Jn, with /time.
  std::optional<ChangeRule> takeChange() {
    auto rule = take(u'M') ? takeWeekdayOfMonth() : takeDayOfYear();
    if (!rule || !take(u'/'))
      return rule;
    const auto time = takeTime(167);
    if (!time)
      return std::nullopt;
    return shifted(*rule, *time);
  }

 private:
  static bool isLetter(QChar c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

  std::optional<ChangeRule> takeWeekdayOfMonth() {
    const auto month = takeNumber(1, 12);
    const auto week = month && take(u'.') ? takeNumber(1, 5) : std::nullopt;
    const auto weekday = week && take(u'.') ? takeNumber(0, 6) : std::nullopt;
    if (!weekday)
      return std::nullopt;
    if (*week == 5) // the last one; of February ICU takes the length of the year at hand
      return ChangeRule{*month, daysInMonth(2024, *month), *weekday, false};
    return ChangeRule{*month, 7 * (*week - 1) + 1, *weekday, true};
  }

  std::optional<ChangeRule> takeDayOfYear() {
    const auto day = take(u'J') ? takeNumber(1, 365) : std::nullopt;
    if (!day)
      return std::nullopt;
    const CivilDay civil = civilFromDays(daysFromCivil({2023, 1, 1}) + *day - 1);
    return ChangeRule{civil.month, civil.day, -1, true};
  }

  /// A time of day below 0 or beyond 24 hours means a neighbouring day.
  static std::optional<ChangeRule> shifted(ChangeRule rule, qint64 time) {
    const qint64 days = time == kSecondsPerDay ? 0 : floorDivide(time, kSecondsPerDay);
    rule.secondOfDay = time - days * kSecondsPerDay;
    rule.day += int(days);
    if (rule.weekday >= 0)
      rule.weekday = int(floorModulo(rule.weekday + days, 7));
    if (rule.day < 1 || rule.day > daysInMonth(2023, rule.month))
      return days == 0 ? std::optional(rule) : std::nullopt;
    return rule;
  }

  QStringView m_rest;
};

enum class Change { ToSummer, FromSummer };

void setRule(icu::SimpleTimeZone& zone, Change change, const ChangeRule& rule) {
  UErrorCode status = U_ZERO_ERROR;
  const int32_t month = rule.month - 1;
  const auto time = int32_t(rule.secondOfDay * 1000);
  const int32_t weekday = UCAL_SUNDAY + rule.weekday;
  if (change == Change::ToSummer && rule.weekday < 0)
    zone.setStartRule(month, rule.day, time, status);
  else if (change == Change::ToSummer)
    zone.setStartRule(month, rule.day, weekday, time, rule.onOrAfter, status);
  else if (rule.weekday < 0)
    zone.setEndRule(month, rule.day, time, status);
  else
    zone.setEndRule(month, rule.day, weekday, time, rule.onOrAfter, status);
}

} // namespace

std::unique_ptr<icu::BasicTimeZone> zoneFromPosixRule(QStringView rule) {
  RuleParser parser(rule);
  if (!parser.takeName())
    return nullptr;
  const auto west = parser.takeTime(24);
  if (!west)
    return nullptr;
  auto zone = std::make_unique<icu::SimpleTimeZone>(int32_t(-*west * 1000), toIcu(rule));
  if (parser.atEnd())
    return zone;
  if (!parser.takeName())
    return nullptr;
  qint64 savings = kSecondsPerHour;
  if (!parser.atEnd() && !parser.take(u',')) {
    const auto summerWest = parser.takeTime(24);
    if (!summerWest || (!parser.atEnd() && !parser.take(u',')))
      return nullptr;
    savings = *west - *summerWest;
  }
  ChangeRule start{3, 8, 0, true};
  ChangeRule end{11, 1, 0, true};
  if (!parser.atEnd()) {
    const auto first = parser.takeChange();
    const auto second = first && parser.take(u',') ? parser.takeChange() : std::nullopt;
    if (!second || !parser.atEnd())
      return nullptr;
    start = *first;
    end = *second;
  }
  if (savings == 0)
    return zone;
  UErrorCode status = U_ZERO_ERROR;
  zone->setDSTSavings(int32_t(savings * 1000), status);
  setRule(*zone, Change::ToSummer, start);
  setRule(*zone, Change::FromSummer, end);
  return zone;
}

bool isZoneIdentifier(QStringView name) {
  // Zones are known by their region, which stands beside their rules. To ask for the canonical name
  // would read a megabyte of other tables at every start.
  UErrorCode status = U_ZERO_ERROR;
  std::array<char, 8> region{};
  icu::TimeZone::getRegion(toIcu(name), region.data(), int32_t(region.size()), status);
  return U_SUCCESS(status);
}

std::unique_ptr<icu::BasicTimeZone> zoneNamed(const QString& name) {
  if (isZoneIdentifier(name)) {
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(toIcu(name)));
    if (auto* basic = dynamic_cast<icu::BasicTimeZone*>(zone.get())) {
      (void)zone.release();
      return std::unique_ptr<icu::BasicTimeZone>(basic);
    }
  }
  if (auto zone = zoneFromPosixRule(name))
    return zone;
  logLine(QStringLiteral("Unknown time zone %1, using UTC").arg(name));
  return std::make_unique<icu::SimpleTimeZone>(0, icu::UnicodeString(u"UTC"));
}

} // namespace tockwise
