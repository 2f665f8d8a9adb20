#include "dates/calendar.h"

#include <QTest>

#include <limits>

using namespace tockwise;

namespace {

const Calendar& here() {
  return Calendar::current();
}

Date at(int year, int month, int day, int hour = 9, int minute = 0, int second = 0) {
  return here().dateWithYear(year, month, day, hour, minute, second);
}

Date plus(Date date, qint64 months, qint64 days, qint64 hours = 0, qint64 minutes = 0) {
  return here().dateByIncrementingYears(date, 0, months, days, hours, minutes, 0);
}

Calendar calendarOf(const char* zone) {
  return {QString::fromLatin1(zone), QStringLiteral("en_US")};
}

} // namespace

class CalendarTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void twoDaysAndThreeHoursAhead() {
    const Date now = at(2025, 6, 10);
    const DateDifference expected{0, 0, 2, 3, 0, 0};
    QCOMPARE(here().differenceSinceDate(plus(now, 0, 2, 3), now), expected);
  }

  void oneMonthAndOneDayAhead() {
    const Date now = at(2025, 6, 10);
    const DateDifference expected{0, 1, 1, 0, 0, 0};
    QCOMPARE(here().differenceSinceDate(plus(now, 1, 1), now), expected);
  }

  void theSameInstantIsNoDistance() {
    const Date now = at(2025, 6, 10);
    QCOMPARE(here().differenceSinceDate(now, now), DateDifference());
  }

  void tenDaysAreTenDays() {
    const Date now = at(2025, 6, 10);
    const DateDifference expected{0, 0, 10, 0, 0, 0};
    QCOMPARE(here().differenceSinceDate(plus(now, 0, 10), now), expected);
  }

  void anEarlierDateGivesNegativeFigures() {
    const Date now = at(2025, 6, 10);
    const DateDifference expected{-1, -2, -3, -4, -5, -6};
    const Date earlier = here().dateByIncrementingYears(now, -1, -2, -3, -4, -5, -6);
    QCOMPARE(here().differenceSinceDate(earlier, now), expected);
  }

  void aCountdownCountsWholeSecondsOfTheClock() {
    const Date due = at(2025, 6, 10, 9, 0, 40);
    const Date start = at(2025, 6, 10, 9, 0, 0);
    const auto secondsAt = [&](double later) {
      return here().differenceSinceDate(due, start.plusSeconds(later)).seconds;
    };
    QCOMPARE(secondsAt(0), 40);
    QCOMPARE(secondsAt(0.002), 40);
    QCOMPARE(secondsAt(0.999), 40);
    QCOMPARE(secondsAt(1.001), 39);
    QCOMPARE(secondsAt(39.9), 1);
    QCOMPARE(secondsAt(40), 0);
    QCOMPARE(secondsAt(40.5), 0);
    QCOMPARE(secondsAt(41.5), -1);
  }

  void aMonthAfterTheThirtyFirstIsTheLastDay() {
    QCOMPARE(plus(at(2025, 1, 31), 1, 0), at(2025, 2, 28));
    QCOMPARE(plus(at(2024, 1, 31), 1, 0), at(2024, 2, 29));
    QCOMPARE(plus(at(2025, 3, 31), 1, 0), at(2025, 4, 30));
    QCOMPARE(plus(at(2025, 3, 31), -1, 0), at(2025, 2, 28));
    QCOMPARE(plus(at(2025, 12, 31), 2, 0), at(2026, 2, 28));
  }

  void aYearAfterALeapDayIsTheTwentyEighth() {
    const Date leapDay = at(2024, 2, 29);
    QCOMPARE(here().dateByIncrementingYears(leapDay, 1, 0, 0, 0, 0, 0), at(2025, 2, 28));
    QCOMPARE(here().dateByIncrementingYears(leapDay, 4, 0, 0, 0, 0, 0), at(2028, 2, 29));
    QCOMPARE(here().dateByIncrementingYears(leapDay, -1, 0, 0, 0, 0, 0), at(2023, 2, 28));
  }

  void theLargestUnitMovesFirst() {
    QCOMPARE(plus(at(2025, 1, 31), 1, 1), at(2025, 3, 1));
    QCOMPARE(plus(at(2025, 3, 1), -1, -1), at(2025, 1, 31));
  }

  void anOffsetMovesBack() {
    QCOMPARE(plus(at(2025, 6, 10, 9, 0), 0, -1, 0, -30), at(2025, 6, 9, 8, 30));
    QCOMPARE(plus(at(2025, 6, 10, 9, 0), 0, -1, -2, -30), at(2025, 6, 9, 6, 30));
  }

  void theFractionOfTheSecondStays() {
    const Date date = at(2025, 1, 31).plusSeconds(0.75);
    QCOMPARE(plus(date, 1, 1, 1, 1), at(2025, 3, 1, 10, 1).plusSeconds(0.75));
    QCOMPARE(plus(date, 0, 0), date);
  }

  void daysAcrossEveryClockChangeKeepTheWallTime() {
    for (int day = 0; day < 366; ++day) {
      const Date before = plus(at(2025, 1, 1, 12, 34), 0, day);
      const DateComponents wall = here().components(before);
      QCOMPARE(wall.hour, 12);
      QCOMPARE(wall.minute, 34);
      const DateDifference oneDay{0, 0, 1, 0, 0, 0};
      QCOMPARE(here().differenceSinceDate(plus(before, 0, 1), before), oneDay);
    }
  }

  void hoursAreExactAcrossEveryClockChange() {
    for (int day = 0; day < 366; ++day) {
      const Date before = plus(at(2025, 1, 1, 12, 34), 0, day);
      QCOMPARE(plus(before, 0, 0, 24), before.plusSeconds(86400));
    }
  }

  void theClockChangesOfNewYork() {
    const Calendar calendar = calendarOf("America/New_York");
    const Date eve = calendar.dateWithYear(2025, 3, 8, 2, 30, 0);
    // 2:30 is skipped: as far after the change.
    const Date next = calendar.dateByIncrementingYears(eve, 0, 0, 1, 0, 0, 0);
    QCOMPARE(calendar.components(next), (DateComponents{2025, 3, 9, 3, 30, 0, 0}));
    QCOMPARE(next.seconds - eve.seconds, 86400.0);
    QCOMPARE(calendar.dateWithYear(2025, 3, 9, 2, 30, 0), next);
    // 1:30 is shown twice: the first.
    const Date twice = calendar.dateWithYear(2025, 11, 2, 1, 30, 0);
    QCOMPARE(calendar.components(twice.plusSeconds(3600)).hour, 1);
    QCOMPARE(calendar.components(twice.plusSeconds(-3600)).hour, 0);
    const Date monthBefore = calendar.dateWithYear(2025, 10, 2, 1, 30, 0);
    QCOMPARE(calendar.dateByIncrementingYears(monthBefore, 0, 1, 0, 0, 0, 0), twice);
  }

  void theHalfHourChangeOfLordHowe() {
    const Calendar calendar = calendarOf("Australia/Lord_Howe");
    const Date eve = calendar.dateWithYear(2025, 4, 5, 12, 0, 0);
    const Date noon = calendar.dateByIncrementingYears(eve, 0, 0, 1, 0, 0, 0);
    QCOMPARE(noon.seconds - eve.seconds, 86400.0 + 1800.0);
    const DateDifference backwards{0, 0, -1, 0, 0, 0};
    QCOMPARE(calendar.differenceSinceDate(eve, noon), backwards);
  }

  void theDayThatApiaSkipped() {
    const Calendar calendar = calendarOf("Pacific/Apia");
    const Date thursday = calendar.dateWithYear(2011, 12, 29, 10, 0, 0);
    const Date next = calendar.dateByIncrementingYears(thursday, 0, 0, 1, 0, 0, 0);
    QCOMPARE(calendar.components(next), (DateComponents{2011, 12, 31, 10, 0, 0, 6}));
    QCOMPARE(next.seconds - thursday.seconds, 86400.0);
    QCOMPARE(calendar.components(calendar.dateWithYear(2011, 12, 30, 10, 0, 0)).day, 31);
  }

  void aHalfHourZoneShowsItsMinutes() {
    const Calendar calendar = calendarOf("Asia/Kolkata");
    QCOMPARE(calendar.components({0}), (DateComponents{2001, 1, 1, 5, 30, 0, 1}));
  }

  void aRuleForAZoneIsFollowed() {
    const Calendar rule = calendarOf("CET-1CEST,M3.5.0,M10.5.0/3");
    const Calendar berlin = calendarOf("Europe/Berlin");
    for (double day = 0; day < 4000; day += 0.25) {
      const Date date{double(kDays2010) + day * 86400};
      QCOMPARE(rule.components(date), berlin.components(date));
    }
  }

  void oddRulesAreFollowed_data() {
    QTest::addColumn<QByteArray>("rule");
    QTest::addColumn<QByteArray>("zone");
    QTest::newRow("west") << QByteArray("EST5EDT,M3.2.0,M11.1.0") << QByteArray("America/New_York");
    QTest::newRow("no dates: the American ones")
        << QByteArray("EST5EDT4") << QByteArray("America/New_York");
    QTest::newRow("half an hour") << QByteArray("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0")
                                  << QByteArray("Australia/Lord_Howe");
    QTest::newRow("a time beyond the day")
        << QByteArray("IST-2IDT,M3.4.4/26,M10.5.0") << QByteArray("Asia/Jerusalem");
    QTest::newRow("summer is the standard")
        << QByteArray("IST-1GMT0,M10.5.0,M3.5.0/1") << QByteArray("Europe/Dublin");
    QTest::newRow("no summer") << QByteArray("IST-5:30") << QByteArray("Asia/Kolkata");
  }
  void oddRulesAreFollowed() {
    QFETCH(QByteArray, rule);
    QFETCH(QByteArray, zone);
    const Calendar ours = calendarOf(rule.constData());
    const Calendar theirs = calendarOf(zone.constData());
    for (double day = 0; day < 1500; day += 0.125) {
      const Date date{double(kDays2015) + day * 86400};
      QCOMPARE(ours.components(date), theirs.components(date));
    }
  }

  void aPosixSignMeansWest() {
    QCOMPARE(calendarOf("UTC+3").components({0}).hour, 21);
    QCOMPARE(calendarOf("GMT+3").components({0}).hour, 21);
    QCOMPARE(calendarOf("Etc/GMT+3").components({0}).hour, 21);
  }

  void anUnknownZoneIsUTC() {
    for (const char* zone : {"Nowhere/Land", "X", "CET-1CEST,nonsense", "CET-99", "AB1", "<+1"})
      QCOMPARE(calendarOf(zone).components({0}), (DateComponents{2001, 1, 1, 0, 0, 0, 1}));
  }

  void theDisplayPatternHasFourDigitsOfYearAndTwoOfTheHour() {
    QCOMPARE(here().dateStringWithFormat(at(2025, 3, 4, 9, 5), kDisplayPattern),
             QStringLiteral("Tue 3/4/2025 09:05 AM"));
    QCOMPARE(here().dateStringWithFormat(at(2025, 12, 14, 0, 0), kDisplayPattern),
             QStringLiteral("Sun 12/14/2025 12:00 AM"));
    QCOMPARE(here().dateStringWithFormat(at(2025, 12, 14, 12, 59, 59).plusSeconds(0.999),
                                         kDisplayPattern),
             QStringLiteral("Sun 12/14/2025 12:59 PM"));
    QCOMPARE(here().dateStringWithFormat(at(2025, 12, 14), u"yyyy-MM-dd"),
             QStringLiteral("2025-12-14"));
  }

  void theDisplayPatternSpeaksTheLocale() {
    const Calendar calendar(QStringLiteral("Europe/Berlin"), QStringLiteral("de_DE"));
    const Date date = calendar.dateWithYear(2025, 3, 4, 9, 5, 0);
    QVERIFY(calendar.dateStringWithFormat(date, kDisplayPattern).startsWith(u"Di"));
  }

  void amountsOfAnySizeStopAtTheCalendarsEnds() {
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    const Date now = at(2025, 6, 10);
    for (int field = 0; field < 6; ++field) {
      qint64 a[6] = {};
      a[field] = most;
      const Date later = here().dateByIncrementingYears(now, a[0], a[1], a[2], a[3], a[4], a[5]);
      a[field] = least;
      const Date earlier = here().dateByIncrementingYears(now, a[0], a[1], a[2], a[3], a[4], a[5]);
      QVERIFY(later.seconds > 8e12 && later.seconds < 1e13);
      QVERIFY(earlier.seconds < -8e12 && earlier.seconds > -1e13);
      QVERIFY(here().differenceSinceDate(later, now).years > 280000);
      QVERIFY(here().differenceSinceDate(earlier, now).years < -280000);
    }
    QVERIFY(here().dateByIncrementingYears(now, most, most, most, most, most, most) > now);
    QVERIFY(here().dateByIncrementingYears(now, least, least, least, least, least, least) < now);
  }

  void datesOfAnySizeAreSurvived() {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double seconds : {1e300, -1e300, infinity, -infinity, 1e15, -1e15}) {
      const Date far{seconds};
      QCOMPARE(here().dateByIncrementingYears(far, 0, 0, 0, 0, 0, 0).seconds, seconds);
      QVERIFY(std::isfinite(here().dateByIncrementingYears(far, 1, 1, 1, 1, 1, 1).seconds));
      QVERIFY(!here().dateStringWithFormat(far, kDisplayPattern).isEmpty());
      QVERIFY(std::llabs(here().differenceSinceDate(far, {0}).years) > 280000);
      (void)here().components(far);
    }
  }

  void whatIsNoDateStaysNone() {
    const Date none{std::numeric_limits<double>::quiet_NaN()};
    QVERIFY(std::isnan(here().dateByIncrementingYears(none, 1, 1, 1, 1, 1, 1).seconds));
    QCOMPARE(here().differenceSinceDate(none, {0}), DateDifference());
    QCOMPARE(here().differenceSinceDate({0}, none), DateDifference());
    QCOMPARE(here().dateStringWithFormat(none, kDisplayPattern), QString());
  }

  void theDistantPastIsTheFirstDayOfYearOne() {
    const Calendar utc = calendarOf("UTC");
    QCOMPARE(utc.components(kDistantPast), (DateComponents{1, 1, 1, 0, 0, 0, 1}));
    QCOMPARE(utc.dateStringWithFormat(kDistantPast, u"y-M-d"), QStringLiteral("1-1-1"));
  }

  void componentsBeyondTheirRangeCarryOver() {
    QCOMPARE(at(2025, 12, 31, 24, 0), at(2026, 1, 1, 0, 0));
    QCOMPARE(at(2025, 13, 1, 9, 60), at(2026, 1, 1, 10, 0));
    QCOMPARE(at(2025, 3, 0, 9, 0), at(2025, 2, 28, 9, 0));
  }

  void theOffsetHoldsUntilTheClockChange() {
    const Calendar calendar = calendarOf("Europe/Berlin");
    const Date winter = calendar.dateWithYear(2025, 1, 10, 9, 0, 0);
    QCOMPARE(calendar.offsetHoldsUntil(winter), calendar.dateWithYear(2025, 3, 30, 3, 0, 0));
    QVERIFY(calendarOf("Asia/Kolkata").offsetHoldsUntil(winter).seconds > 8e12);
  }

 private:
  static constexpr qint64 kDays2010 = 284'000'000;
  static constexpr qint64 kDays2015 = 441'763'200; // 2015-01-01
};

QTEST_GUILESS_MAIN(CalendarTest)
#include "calendar_test.moc"
