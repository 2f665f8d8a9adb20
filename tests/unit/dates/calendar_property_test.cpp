// Our arithmetic on the zones' offsets against ICU's calendar, field by field.
#include "dates/calendar.h"

#include <QRandomGenerator>
#include <QTest>

#include <unicode/basictz.h>
#include <unicode/gregocal.h>
#include <unicode/strenum.h>
#include <unicode/tztrans.h>

#include <cmath>
#include <memory>
#include <vector>

using namespace tockwise;

namespace {

/// The same questions put to ICU in the plainest way.
class IcuCalendar {
 public:
  explicit IcuCalendar(const QString& zone) {
    UErrorCode status = U_ZERO_ERROR;
    m_zone.reset(icu::TimeZone::createTimeZone(
        icu::UnicodeString(reinterpret_cast<const char16_t*>(zone.utf16()), int32_t(zone.size()))));
    m_calendar = std::make_unique<icu::GregorianCalendar>(*m_zone, icu::Locale("en_US"), status);
    m_calendar->setGregorianChange(double(INT32_MIN) * 86400000.0, status);
    m_calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  }

  Date add(Date date, const std::array<qint64, 6>& amounts) {
    UErrorCode status = U_ZERO_ERROR;
    const double whole = std::floor(date.seconds);
    m_calendar->setTime((whole + Date::kUnixOffset) * 1000, status);
    for (size_t i = 0; i < amounts.size(); ++i)
      m_calendar->add(kUnits[i], int32_t(amounts[i]), status);
    return Date::fromUnixSeconds(m_calendar->getTime(status) / 1000)
        .plusSeconds(date.seconds - whole);
  }

  DateDifference difference(Date date, Date other) {
    UErrorCode status = U_ZERO_ERROR;
    m_calendar->setTime((std::floor(other.seconds) + Date::kUnixOffset) * 1000, status);
    const UDate target = (std::floor(date.seconds) + Date::kUnixOffset) * 1000;
    std::array<qint64, 6> figures{};
    for (size_t i = 0; i < figures.size(); ++i)
      figures[i] = m_calendar->fieldDifference(target, kUnits[i], status);
    return {figures[0], figures[1], figures[2], figures[3], figures[4], figures[5]};
  }

  DateComponents components(Date date) {
    UErrorCode status = U_ZERO_ERROR;
    m_calendar->setTime((std::floor(date.seconds) + Date::kUnixOffset) * 1000, status);
    const auto get = [&](UCalendarDateFields field) { return m_calendar->get(field, status); };
    return {get(UCAL_EXTENDED_YEAR),
            get(UCAL_MONTH) + 1,
            get(UCAL_DATE),
            get(UCAL_HOUR_OF_DAY),
            get(UCAL_MINUTE),
            get(UCAL_SECOND),
            get(UCAL_DAY_OF_WEEK) - UCAL_SUNDAY};
  }

  Date make(const DateComponents& c) {
    UErrorCode status = U_ZERO_ERROR;
    m_calendar->clear();
    m_calendar->set(c.year, c.month - 1, c.day, c.hour, c.minute, c.second);
    return Date::fromUnixSeconds(m_calendar->getTime(status) / 1000);
  }

  /// A clock change near date, or date itself in a zone without any.
  Date changeAfter(Date date) {
    const auto* zone = dynamic_cast<const icu::BasicTimeZone*>(m_zone.get());
    icu::TimeZoneTransition transition;
    if (!zone || !zone->getNextTransition(date.unixSeconds() * 1000, false, transition))
      return date;
    return Date::fromUnixSeconds(transition.getTime() / 1000);
  }

 private:
  static constexpr UCalendarDateFields kUnits[] = {UCAL_EXTENDED_YEAR, UCAL_MONTH,
                                                   UCAL_DAY_OF_MONTH,  UCAL_HOUR_OF_DAY,
                                                   UCAL_MINUTE,        UCAL_SECOND};
  std::unique_ptr<icu::TimeZone> m_zone;
  std::unique_ptr<icu::GregorianCalendar> m_calendar;
};

QStringList allZones() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::StringEnumeration> names(icu::TimeZone::createTimeZoneIDEnumeration(
      UCAL_ZONE_TYPE_CANONICAL, nullptr, nullptr, status));
  QStringList zones;
  int32_t length = 0;
  while (const char* name = names->next(&length, status))
    zones += QString::fromLatin1(name, length);
  return zones;
}

class Dice {
 public:
  explicit Dice(quint32 seed) : m_generator(seed) {}
  qint64 between(qint64 least, qint64 most) {
    return least + qint64(m_generator.generate64() % quint64(most - least + 1));
  }
  bool oneIn(int chances) { return between(1, chances) == 1; }

  /// Dates that matter: clock changes, month ends, leap days, and any other.
  Date date(IcuCalendar& calendar) {
    const Date any{double(between(-3'600'000'000, 2'500'000'000)) +
                   (oneIn(4) ? double(between(0, 999)) / 1000 : 0)};
    if (oneIn(3))
      return calendar.changeAfter(any).plusSeconds(double(between(-90'000, 90'000)));
    if (oneIn(3)) {
      DateComponents c = calendar.components(any);
      c.month = oneIn(2) ? 2 : c.month;
      c.day = int(between(27, 31));
      return calendar.make(c);
    }
    return any;
  }

 private:
  QRandomGenerator m_generator;
};

QByteArray text(const DateDifference& d) {
  return QByteArray::number(d.years) + "y " + QByteArray::number(d.months) + "m " +
         QByteArray::number(d.days) + "d " + QByteArray::number(d.hours) + ":" +
         QByteArray::number(d.minutes) + ":" + QByteArray::number(d.seconds);
}

QByteArray place(const QString& zone, Date a, Date b = {}) {
  return zone.toUtf8() + " " + QByteArray::number(a.unixSeconds(), 'f', 3) + " " +
         QByteArray::number(b.unixSeconds(), 'f', 3);
}

} // namespace

class CalendarPropertyTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void everyAnswerIsThatOfICU() {
    const QStringList zones = allZones();
    QVERIFY(zones.size() > 400);
    Dice dice(20250304);
    for (const QString& zone : zones) {
      const Calendar ours(zone, QStringLiteral("en_US"));
      IcuCalendar theirs(zone);
      for (int round = 0; round < 60; ++round) {
        const Date a = dice.date(theirs);
        QVERIFY2(ours.components(a) == theirs.components(a), place(zone, a));
        const DateComponents wall = theirs.components(a);
        QVERIFY2(ours.dateWithYear(wall.year, wall.month, wall.day, wall.hour, wall.minute,
                                   wall.second) == theirs.make(wall),
                 place(zone, a));
        compareDifference(zone, ours, theirs, dice, a);
        compareAddition(zone, ours, theirs, dice, a);
        if (QTest::currentTestFailed())
          return;
      }
    }
  }

  void theDifferenceAddedGivesTheDate() {
    Dice dice(7);
    for (const QString& zone : allZones()) {
      const Calendar calendar(zone, QStringLiteral("en_US"));
      IcuCalendar icu(zone);
      for (int round = 0; round < 20; ++round) {
        const Date other{std::floor(dice.date(icu).seconds)};
        const Date date{std::floor(dice.date(icu).seconds)};
        const DateDifference d = calendar.differenceSinceDate(date, other);
        QVERIFY2(calendar.dateByIncrementingYears(other, d.years, d.months, d.days, d.hours,
                                                  d.minutes, d.seconds) == date,
                 place(zone, date, other) + " " + text(d));
      }
    }
  }

 private:
  static void compareDifference(const QString& zone, const Calendar& ours, IcuCalendar& theirs,
                                Dice& dice, Date a) {
    const Date b =
        dice.oneIn(2) ? dice.date(theirs) : a.plusSeconds(double(dice.between(-200'000, 200'000)));
    const DateDifference difference = ours.differenceSinceDate(a, b);
    const DateDifference expected = theirs.difference(a, b);
    QVERIFY2(difference == expected,
             place(zone, a, b) + ": " + text(difference) + " instead of " + text(expected));
  }

  static void compareAddition(const QString& zone, const Calendar& ours, IcuCalendar& theirs,
                              Dice& dice, Date a) {
    std::array<qint64, 6> amounts{};
    for (qint64& amount : amounts)
      amount = dice.oneIn(2) ? 0 : dice.between(-40, 40);
    const Date moved = ours.dateByIncrementingYears(a, amounts[0], amounts[1], amounts[2],
                                                    amounts[3], amounts[4], amounts[5]);
    const Date expected = theirs.add(a, amounts);
    QByteArray what = place(zone, a);
    for (const qint64 amount : amounts)
      what += " " + QByteArray::number(amount);
    QVERIFY2(moved == expected, what + ": " + QByteArray::number(moved.seconds - expected.seconds));
  }
};

QTEST_GUILESS_MAIN(CalendarPropertyTest)
#include "calendar_property_test.moc"
