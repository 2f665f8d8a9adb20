#include "engine/fire_forecast.h"

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

constexpr std::array kAllDays{true, true, true, true, true, true, true};

Extra on(std::array<bool, 7> days, std::array<qint64, 4> times = {0, 0, 0, 0}) {
  return {days, times};
}

Extra between(qint64 startHour, qint64 startMinute, qint64 endHour, qint64 endMinute) {
  return on(kAllDays, {startHour, startMinute, endHour, endMinute});
}

constexpr std::array kMonTue{false, true, true, false, false, false, false};
constexpr std::array kNoDay{false, false, false, false, false, false, false};
constexpr Interval kWeekly{0, 7, 0, 0};
constexpr Interval kDaily{0, 1, 0, 0};

std::optional<Date> next(const FireRule& rule, Date now) {
  return nextFiring(rule, now, here());
}

QString text(const FireRule& rule, Date now) {
  return firesText(rule, now, here());
}

} // namespace

// 3/4/2025 is a Tuesday; no clock changes in the test zones from there to 3/9.
class FireForecastTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aOneTimeReminderFiresAtItsDate() {
    QCOMPARE(next({at(2025, 3, 4)}, at(2025, 3, 1)), at(2025, 3, 4));
  }

  void aReminderDueNowOrEarlierFiresAtOnce() {
    const Date now = at(2025, 3, 4);
    QCOMPARE(next({now}, now), now);
    QCOMPARE(next({at(2020, 1, 1)}, now), now);
    QCOMPARE(next({at(2020, 1, 1), kWeekly}, now), now);
  }

  void theNoticeComesBeforeTheDate() {
    QCOMPARE(next({at(2025, 3, 7, 10), kBlankInterval, kBlankExtra, {1, 0, 30}}, at(2025, 3, 4)),
             at(2025, 3, 6, 9, 30));
  }

  void aOneTimeReminderHeldBackFiresWhenItIsAllowed() {
    const Extra window = between(9, 0, 17, 0);
    QCOMPARE(next({at(2025, 3, 4, 8), kBlankInterval, window}, at(2025, 3, 4, 7)),
             at(2025, 3, 4, 9, 0, 1));
    QCOMPARE(next({at(2025, 3, 4, 17), kBlankInterval, window}, at(2025, 3, 4, 7)),
             at(2025, 3, 5, 9, 0, 1));
    QCOMPARE(next({at(2025, 3, 5), kBlankInterval, on(kMonTue)}, at(2025, 3, 4)),
             at(2025, 3, 10, 0));
  }

  void aRepeatingReminderRefusedWaitsForAnotherOccurrence() {
    QCOMPARE(next({at(2025, 3, 5), kDaily, on(kMonTue)}, at(2025, 3, 5)), at(2025, 3, 10, 9));
    // Its date has passed, and now is not allowed.
    QCOMPARE(next({at(2025, 3, 4, 10), kDaily, between(9, 0, 17, 0)}, at(2025, 3, 4, 18)),
             at(2025, 3, 5, 10));
    QCOMPARE(next({at(2025, 3, 4, 8), {0, 0, 0, 1}, between(9, 0, 17, 0)}, at(2025, 3, 4, 7)),
             at(2025, 3, 4, 9, 1));
  }

  void theGateIsAskedWhenTheNoticeComes() {
    // On Wednesday, 30 minutes after midnight, less an hour: Tuesday.
    QCOMPARE(next({at(2025, 3, 5, 0, 30), kWeekly, on(kMonTue), {0, 1, 0}}, at(2025, 3, 4)),
             at(2025, 3, 4, 23, 30));
    QCOMPARE(next({at(2025, 3, 5, 1, 30), kWeekly, on(kMonTue), {0, 1, 0}}, at(2025, 3, 4)),
             std::nullopt);
  }

  void aNoticeLongerThanTheIntervalIsTriedEverySecond() {
    // Refused at 8:59:59; the next occurrence is due a second later, and so on.
    const FireRule rule{at(2025, 3, 4, 8), kDaily, between(9, 0, 17, 0), {5, 0, 0}};
    QCOMPARE(next(rule, at(2025, 3, 4, 8, 59, 58)), at(2025, 3, 4, 9, 0, 1));
  }

  void neverFires_data() {
    QTest::addColumn<Interval>("interval");
    QTest::addColumn<Extra>("extra");
    QTest::addColumn<QString>("why");
    const QString noDay = QStringLiteral("no weekday is allowed");
    const QString window = QStringLiteral("the time of day ends before it begins");
    const QString misses = QStringLiteral("it never falls into the allowed times");
    QTest::newRow("no weekday") << kBlankInterval << on(kNoDay) << noDay;
    QTest::newRow("no weekday, repeating") << Interval{0, 0, 0, 1} << on(kNoDay) << noDay;
    QTest::newRow("across midnight") << kBlankInterval << between(22, 0, 6, 0) << window;
    QTest::newRow("across midnight, daily") << kDaily << between(22, 0, 6, 0) << window;
    QTest::newRow("weekly, not its day")
        << kWeekly << on({true, true, false, true, true, true, true}) << misses;
    QTest::newRow("daily, outside the window") << kDaily << between(9, 30, 17, 0) << misses;
    QTest::newRow("hourly, beside the window")
        << Interval{0, 0, 1, 0} << between(9, 15, 9, 20) << misses;
    QTest::newRow("every minute, a window of one")
        << Interval{0, 0, 0, 1} << between(9, 15, 9, 16) << misses;
    QTest::newRow("every four weeks, not its day")
        << Interval{0, 28, 0, 0} << on(kMonTue, {1, 0, 2, 0}) << misses;
  }
  void neverFires() {
    QFETCH(Interval, interval);
    QFETCH(Extra, extra);
    QFETCH(QString, why);
    for (const Offset& offset : {kBlankOffset, Offset{7, 0, 0}, Offset{28, 0, 0}}) {
      const FireRule rule{at(2025, 3, 4, 9), interval, extra, offset};
      const Date now = at(2025, 1, 15);
      QCOMPARE(next(rule, now), std::nullopt);
      QCOMPARE(text(rule, now), QStringLiteral("Never fires: ") + why);
    }
  }

  void aDateThatDoesNotComeNeverFires() {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const Date date : {kDistantFuture, kDistantFuture.plusSeconds(1e12), Date{nan}}) {
      QCOMPARE(next({date, kDaily}, at(2025, 3, 4)), std::nullopt);
      QCOMPARE(text({date, kDaily, kBlankExtra, {1, 0, 0}}, at(2025, 3, 4)),
               QStringLiteral("Never fires: its date does not come"));
    }
  }

  void anIntervalThatDoesNotMoveForwardIsTriedUntilAllowed() {
    QCOMPARE(next({at(2025, 3, 4, 8), {0, -1, 0, 0}, between(9, 0, 17, 0)}, at(2025, 3, 4, 7)),
             at(2025, 3, 4, 9, 0, 1));
  }

  void itSaysWhenItFires() {
    const Date now = at(2025, 3, 1, 12);
    const Date date = at(2025, 3, 4, 9, 5);
    QCOMPARE(text({date}, now), QStringLiteral("Fires Tue 3/4/2025 09:05 AM"));
    QCOMPARE(text({date, kWeekly, on(kMonTue, {9, 0, 17, 0})}, now),
             QStringLiteral("Fires Tue 3/4/2025 09:05 AM, then every week on Mon and Tue between "
                            "09:00 and 17:00"));
    QCOMPARE(text({date, {0, 0, 2, 0}}, now),
             QStringLiteral("Fires Tue 3/4/2025 09:05 AM, then every 2 hours"));
    QCOMPARE(text({date, kBlankInterval, kBlankExtra, {1, 0, 0}}, now),
             QStringLiteral("Fires Mon 3/3/2025 09:05 AM, 1 day before"));
    QCOMPARE(text({date, kDaily, kBlankExtra, {0, 1, 30}}, now),
             QStringLiteral("Fires Tue 3/4/2025 07:35 AM, then every day, 1 hour and 30 minutes "
                            "before"));
    QCOMPARE(text({date, kBlankInterval, between(10, 0, 11, 0), {1, 0, 0}}, now),
             QStringLiteral("Fires Mon 3/3/2025 10:00 AM"));
  }

  void itSaysWhatBecomesOfAPastDate() {
    const Date now = at(2025, 3, 4, 12);
    QCOMPARE(text({at(2025, 3, 4, 11)}, now), QStringLiteral("Fires at once: its date has passed"));
    QCOMPARE(text({at(2025, 3, 5, 11), kBlankInterval, kBlankExtra, {1, 1, 0}}, now),
             QStringLiteral("Fires at once: less than 1 day and 1 hour remain"));
    QCOMPARE(text({at(2025, 3, 4, 11), kDaily}, now),
             QStringLiteral("Fires at once, then every day"));
    QCOMPARE(text({at(2025, 3, 4, 11), kDaily, between(9, 0, 11, 30)}, now),
             QStringLiteral("Fires Wed 3/5/2025 11:00 AM, then every day between 09:00 and 11:30"));
    // Monday's occurrence was missed; it fires now, and no Monday is allowed.
    QCOMPARE(
        text({at(2025, 3, 3, 11), kWeekly, on({true, false, true, true, true, true, true})}, now),
        QStringLiteral("Fires at once, then never again"));
  }

  void intervalsHaveNames_data() {
    QTest::addColumn<Interval>("interval");
    QTest::addColumn<QString>("name");
    const auto row = [](Interval interval, const char* name) {
      QTest::newRow(name) << interval << QString::fromLatin1(name);
    };
    row({0, 0, 0, 0}, "");
    row({1, 0, 0, 0}, "every month");
    row({12, 0, 0, 0}, "every 12 months");
    row({0, 1, 0, 0}, "every day");
    row({0, 7, 0, 0}, "every week");
    row({0, 14, 0, 0}, "every 2 weeks");
    row({0, 10, 0, 0}, "every 10 days");
    row({0, 0, 1, 0}, "every hour");
    row({0, 0, 0, 1}, "every minute");
    row({0, 0, 0, 45}, "every 45 minutes");
    row({1, 2, 3, 0}, "every 1 month, 2 days and 3 hours");
    row({0, 7, 0, 1}, "every 7 days and 1 minute");
    row({0, 1, 1, 0}, "every 1 day and 1 hour");
  }
  void intervalsHaveNames() {
    QFETCH(Interval, interval);
    QFETCH(QString, name);
    QCOMPARE(intervalText(interval), name);
  }

  void extrasHaveNames() {
    QCOMPARE(extraText(kBlankExtra), QString());
    QCOMPARE(extraText(on(kMonTue)), QStringLiteral("on Mon and Tue"));
    QCOMPARE(extraText(on({false, true, true, false, false, true, false})),
             QStringLiteral("on Mon, Tue and Fri"));
    QCOMPARE(extraText(on({true, false, false, false, false, false, true})),
             QStringLiteral("on Sat and Sun"));
    QCOMPARE(extraText(on({false, true, true, true, true, true, false}, {9, 5, 17, 0})),
             QStringLiteral("on weekdays between 09:05 and 17:00"));
    QCOMPARE(extraText(on(kNoDay)), QStringLiteral("on no weekday"));
    QCOMPARE(extraText(on(kAllDays, {8, 0, 8, 0})), QString());
  }

  void offsetsHaveNames() {
    QCOMPARE(offsetText(kBlankOffset), QString());
    QCOMPARE(offsetText({1, 0, 0}), QStringLiteral("1 day before"));
    QCOMPARE(offsetText({2, 1, 30}), QStringLiteral("2 days, 1 hour and 30 minutes before"));
  }
};

QTEST_GUILESS_MAIN(FireForecastTest)
#include "fire_forecast_test.moc"
