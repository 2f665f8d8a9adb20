#include "engine/repeat_rules.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tockwise;

namespace {

const Calendar& here() {
  return Calendar::current();
}

Date at(int year, int month, int day, int hour = 9, int minute = 0, int second = 0) {
  return here().dateWithYear(year, month, day, hour, minute, second);
}

Extra window(std::array<qint64, 4> times) {
  Extra extra;
  extra.times = times;
  return extra;
}

/// The rule as it is stated, step by step.
Date plainNextFireDate(Date fireDate, const Interval& interval, Date now,
                       const Calendar& calendar) {
  const auto moved = [&](Date date) {
    return calendar.dateByIncrementingYears(date, 0, interval[0], interval[1], interval[2],
                                            interval[3], 0);
  };
  Date next = moved(fireDate);
  while (next < now)
    next = moved(next);
  return next;
}

} // namespace

class RepeatRulesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void onlyABlankIntervalDoesNotRepeat() {
    QVERIFY(!isRepeatingReminder(kBlankInterval));
    QVERIFY(isRepeatingReminder({0, 0, 0, 1}));
    QVERIFY(isRepeatingReminder({1, 0, 0, 0}));
  }

  void theTypeIsTheFirstThatTheIntervalMeets_data() {
    QTest::addColumn<Interval>("interval");
    QTest::addColumn<QString>("type");
    const auto row = [](Interval interval, const char* type) {
      QTest::addRow("%s %lld,%lld,%lld,%lld", type, interval[0], interval[1], interval[2],
                    interval[3])
          << interval << QString::fromLatin1(type);
    };
    row({1, 0, 0, 0}, "every month");
    row({1, 1, 0, 0}, "every month");
    row({0, 1, 0, 0}, "every day");
    row({0, 1, 1, 0}, "every day");
    row({0, 7, 0, 0}, "every week");
    row({0, 0, 1, 0}, "every hour");
    row({0, 0, 0, 1}, "every minute");
    row({0, 14, 0, 0}, "regular");
    row({2, 0, 0, 0}, "regular");
    row({0, 2, 0, 0}, "regular");
    row({0, 0, 0, 0}, "regular");
  }
  void theTypeIsTheFirstThatTheIntervalMeets() {
    QFETCH(Interval, interval);
    QFETCH(QString, type);
    QCOMPARE(reminderTypeString(interval), type);
  }

  void anOffsetOfADayFallsDueADayBefore() {
    QCOMPARE(alertDate(at(2025, 6, 11, 10, 0), {1, 0, 0}, here()), at(2025, 6, 10, 10, 0));
    QCOMPARE(alertDate(at(2025, 6, 11, 10, 0), {1, 0, 30}, here()), at(2025, 6, 10, 9, 30));
    QCOMPARE(alertDate(at(2025, 6, 11, 10, 0), kBlankOffset, here()), at(2025, 6, 11, 10, 0));
  }

  void anAlertDateIsNeverBeforeItsBound() {
    for (int day = 0; day < 800; ++day) {
      const Date date = at(2011, 6, 1 + day, day % 24, 30);
      for (const Offset& offset : {Offset{1, 0, 0}, Offset{200, 24, 60}, Offset{0, 5, 0}}) {
        const Date alert = alertDate(date, offset, here());
        QVERIFY(earliestAlertDate(date, offset) <= alert);
        QVERIFY(alert.seconds - earliestAlertDate(date, offset).seconds < 4 * 86400);
      }
    }
  }

  void offsetsOfAnySizeAreSurvived() {
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    QVERIFY(alertDate(at(2025, 1, 1), {least, least, least}, here()) > at(2025, 1, 1));
  }

  void aMinuteStepTenMinutesLate() {
    const Date fireDate = at(2025, 6, 10, 9, 0);
    QCOMPARE(nextFireDate(fireDate, {0, 0, 0, 1}, at(2025, 6, 10, 9, 10, 30), here()),
             at(2025, 6, 10, 9, 11));
  }

  void aNextDateOfExactlyNowIsNotMovedFurther() {
    const Date fireDate = at(2025, 6, 10, 9, 0);
    QCOMPARE(nextFireDate(fireDate, {0, 0, 0, 1}, at(2025, 6, 10, 9, 10), here()),
             at(2025, 6, 10, 9, 10));
  }

  void aReminderOnTimeMovesOnce() {
    const Date fireDate = at(2025, 6, 10, 9, 0);
    QCOMPARE(nextFireDate(fireDate, {0, 1, 0, 0}, fireDate, here()), at(2025, 6, 11, 9, 0));
  }

  void aDailyReminderThreeDaysAndAnHourLateMovesByWholeDays() {
    const Date fireDate = at(2025, 6, 10, 9, 0);
    QCOMPARE(nextFireDate(fireDate, {0, 1, 0, 0}, at(2025, 6, 13, 10, 0), here()),
             at(2025, 6, 14, 9, 0));
  }

  void aMonthlyReminderOfTheThirtyFirstSticksToTheTwentyEighth() {
    const Date fireDate = at(2025, 1, 31);
    QCOMPARE(nextFireDate(fireDate, {1, 0, 0, 0}, fireDate, here()), at(2025, 2, 28));
    QCOMPARE(nextFireDate(fireDate, {1, 0, 0, 0}, at(2025, 3, 1), here()), at(2025, 3, 28));
  }

  void anIntervalThatDoesNotMoveForwardMovesOnce() {
    const Date fireDate = at(2025, 6, 10);
    const Date now = at(2025, 6, 20);
    QCOMPARE(nextFireDate(fireDate, {0, 0, 0, 0}, now, here()), fireDate);
    QCOMPARE(nextFireDate(fireDate, {0, -1, 0, 0}, now, here()), at(2025, 6, 9));
    QCOMPARE(nextFireDate(fireDate, {0, 0, 1, -60}, now, here()), fireDate);
  }

  void datesAndIntervalsOfAnySizeEnd() {
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Date now = at(2025, 6, 20);
    for (const double seconds :
         {-infinity, -1e300, -9e12, kDistantPast.seconds, 0.0, 1e300, infinity}) {
      for (const Interval& interval :
           {Interval{0, 0, 0, 1}, Interval{0, 1, 0, 0}, Interval{0, 0, 0, most},
            Interval{least, most, least, most}, Interval{most, most, most, most}})
        QVERIFY(!std::isnan(nextFireDate({seconds}, interval, now, here()).seconds));
    }
    QVERIFY(std::isnan(nextFireDate({std::nan("")}, {0, 0, 0, 1}, now, here()).seconds));
    QVERIFY(nextFireDate(now, {0, 0, 0, 1}, {infinity}, here()) > now);
  }

  // Counted in millions of steps this would outlast the test's time limit.
  void manyRemindersMissedForAgesCatchUpAtOnce() {
    const Date now = at(2025, 6, 20, 9, 30, 30);
    for (int i = 0; i < 1000; ++i) {
      QCOMPARE(nextFireDate(at(2022, 6, 20, 9, 0), {0, 0, 0, 1}, now, here()),
               at(2025, 6, 20, 9, 31));
      QVERIFY(nextFireDate(kDistantPast, {0, 0, 0, 1}, now, here()) >= now);
      QVERIFY(nextFireDate(kDistantPast, {0, 1, 0, 1}, now, here()) >= now);
    }
  }

  void theNextDateIsThatOfThePlainLoop() {
    QRandomGenerator dice(2025);
    const auto below = [&](qint64 bound) { return qint64(dice.generate64() % quint64(bound)); };
    const Calendar here(Calendar::current().timeZone(), Calendar::current().locale());
    for (int round = 0; round < 3000; ++round) {
      Interval interval{};
      while (interval == kBlankInterval) {
        interval = {below(3) ? 0 : below(13), below(2) ? 0 : below(32), below(2) ? 0 : below(25),
                    below(2) ? 0 : below(61)};
      }
      const double length = double(interval[0]) * 2.6e6 + double(interval[1]) * 86400 +
                            double(interval[2]) * 3600 + double(interval[3]) * 60;
      // 1990 to 2030, so that the dates on which the five zones changed their minds are met too.
      Date fireDate{-347'000'000.0 + double(below(1'260'000'000))};
      if (below(2))
        fireDate = fireDate.plusSeconds(double(below(1024)) / 1024);
      const double late = std::min(length * double(below(600)), 40 * 365 * 86400.0);
      const Date now = fireDate.plusSeconds(late + (below(3) ? double(below(100'000)) / 64 : 0));
      const Date expected = plainNextFireDate(fireDate, interval, now, here);
      const Date next = nextFireDate(fireDate, interval, now, here);
      QVERIFY2(next == expected,
               qPrintable(QStringLiteral("%1 every %2/%3/%4/%5 at %6: %7 instead of %8")
                              .arg(fireDate.seconds, 0, 'f', 9)
                              .arg(interval[0])
                              .arg(interval[1])
                              .arg(interval[2])
                              .arg(interval[3])
                              .arg(now.seconds, 0, 'f', 9)
                              .arg(next.seconds, 0, 'f', 9)
                              .arg(expected.seconds, 0, 'f', 9)));
    }
  }

  void theWindowIsOpenStrictlyInside() {
    const Extra extra = window({9, 0, 17, 0});
    QVERIFY(!checkExtra(extra, at(2025, 6, 10, 9, 0, 0), here()));
    QVERIFY(checkExtra(extra, at(2025, 6, 10, 9, 0, 1), here()));
    QVERIFY(checkExtra(extra, at(2025, 6, 10, 16, 59, 59), here()));
    QVERIFY(!checkExtra(extra, at(2025, 6, 10, 17, 0, 0), here()));
  }

  void aWindowAcrossMidnightNeverMatches() {
    const Extra extra = window({22, 0, 6, 0});
    for (int hour = 0; hour < 24; ++hour)
      QVERIFY(!checkExtra(extra, at(2025, 6, 10, hour, 30), here()));
    QVERIFY(!nextMomentAllowed(extra, at(2025, 6, 10), here()));
  }

  void equalEndsAreNoWindow() {
    QVERIFY(checkExtra(window({0, 0, 0, 0}), at(2025, 6, 10, 0, 0, 0), here()));
    QVERIFY(checkExtra(window({12, 30, 12, 30}), at(2025, 6, 10, 3, 0), here()));
  }

  void aForbiddenWeekdayForbids() {
    Extra extra;
    extra.days[2] = false; // 10 June 2025 is a Tuesday
    QVERIFY(!checkExtra(extra, at(2025, 6, 10), here()));
    QVERIFY(checkExtra(extra, at(2025, 6, 11), here()));
  }

  void figuresOfAnySizeAreNoTime() {
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    QVERIFY(checkExtra(window({least, least, most, most}), at(2025, 6, 10), here()));
    QVERIFY(!checkExtra(window({most, 0, 0, 0}), at(2025, 6, 10), here()));
  }

  void theNextAllowedMomentIsASecondAfterTheStart() {
    const Extra extra = window({9, 0, 17, 0});
    QCOMPARE(nextMomentAllowed(extra, at(2025, 6, 10, 7, 0), here()), at(2025, 6, 10, 9, 0, 1));
    QCOMPARE(nextMomentAllowed(extra, at(2025, 6, 10, 9, 0, 0), here()), at(2025, 6, 10, 9, 0, 1));
    QCOMPARE(nextMomentAllowed(extra, at(2025, 6, 10, 17, 0), here()), at(2025, 6, 11, 9, 0, 1));
    QCOMPARE(nextMomentAllowed(extra, at(2025, 6, 10, 12, 0).plusSeconds(0.5), here()),
             at(2025, 6, 10, 12, 0, 1));
  }

  void theNextAllowedMomentIsMidnightOfAnAllowedDay() {
    Extra extra;
    extra.days = {false, false, false, false, false, true, false}; // Fridays
    QCOMPARE(nextMomentAllowed(extra, at(2025, 6, 10, 7, 0), here()), at(2025, 6, 13, 0, 0));
    QCOMPARE(nextMomentAllowed(extra, at(2025, 6, 13, 23, 59, 59), here()), at(2025, 6, 20, 0, 0));
  }

  void noDayAllowedMeansNoMoment() {
    Extra extra;
    extra.days.fill(false);
    QVERIFY(!nextMomentAllowed(extra, at(2025, 6, 10), here()));
    QVERIFY(!checkExtra(extra, at(2025, 6, 10), here()));
  }

  /// Second by second around the moment that is promised.
  void nothingIsAllowedBeforeTheNextAllowedMoment() {
    QRandomGenerator dice(7);
    for (int round = 0; round < 300; ++round) {
      Extra extra;
      for (bool& day : extra.days)
        day = dice.bounded(2);
      if (dice.bounded(4))
        extra.times = {dice.bounded(25), dice.bounded(61), dice.bounded(25), dice.bounded(61)};
      const Date now{double(dice.bounded(1'000'000'000))};
      const auto moment = nextMomentAllowed(extra, now, here());
      const Date end = moment.value_or(now.plusSeconds(15 * 86400));
      if (moment)
        QVERIFY(checkExtra(extra, *moment, here()));
      // Windows begin on whole minutes: the second after each is the first to look at.
      for (double t = std::ceil((now.seconds + 1) / 60) * 60; t + 1 < end.seconds; t += 60) {
        QVERIFY(!checkExtra(extra, {t}, here()));
        QVERIFY(!checkExtra(extra, {t + 1}, here()));
      }
    }
  }
};

QTEST_GUILESS_MAIN(RepeatRulesTest)
#include "repeat_rules_test.moc"
