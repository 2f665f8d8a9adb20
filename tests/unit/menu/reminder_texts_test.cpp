#include "menu/reminder_texts.h"

#include <QTest>

using namespace tockwise;

namespace {

constexpr double kMinute = 60;
constexpr double kHour = 3600;

const Calendar& calendar() {
  return Calendar::current();
}

/// A moment of the user's day, far from any clock change.
Date someNoon() {
  return calendar().dateWithYear(2025, 3, 4, 12, 0, 0);
}

Date shifted(Date date, qint64 years, qint64 months, qint64 days, qint64 hours = 0,
             qint64 minutes = 0, qint64 seconds = 0) {
  return calendar().dateByIncrementingYears(date, years, months, days, hours, minutes, seconds);
}

} // namespace

class ReminderTextsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void elapsedTimeTakesTheFirstFigureThatIsNotZero_data() {
    QTest::addColumn<QList<qint64>>("back");
    QTest::addColumn<QString>("phrase");
    const auto row = [](const char* name, QList<qint64> back, const char16_t* phrase) {
      QTest::newRow(name) << back << QString::fromUtf16(phrase);
    };
    row("years", {2, 1, 3, 4, 5, 6}, u"2 y, 1 m, 3 d ago");
    row("years only", {1, 0, 0, 0, 0, 0}, u"1 y, 0 m, 0 d ago");
    row("months", {0, 2, 3, 4, 5, 6}, u"2 m, 3 d, 4 h ago");
    row("days", {0, 0, 3, 4, 5, 6}, u"3 d, 4 h, 5 m ago");
    row("hours", {0, 0, 0, 3, 12, 59}, u"3 h, 12 m ago");
    row("minutes", {0, 0, 0, 0, 7, 59}, u"7 m ago");
    row("seconds", {0, 0, 0, 0, 0, 30}, u"now");
    row("one second", {0, 0, 0, 0, 0, 1}, u"now");
  }
  void elapsedTimeTakesTheFirstFigureThatIsNotZero() {
    QFETCH(QList<qint64>, back);
    QFETCH(QString, phrase);
    const Date now = someNoon();
    const Date past = shifted(now, -back[0], -back[1], -back[2], -back[3], -back[4], -back[5]);
    QCOMPARE(countDownStringFromDate(past, now, calendar()), std::optional(phrase));
  }

  void elapsedTimeHidesTheSign() {
    const Date now = someNoon();
    QCOMPARE(countDownStringFromDate(now.plusSeconds(3 * kHour + 12 * kMinute), now, calendar()),
             std::optional(QStringLiteral("3 h, 12 m ago")));
  }

  void elapsedTimeOfThisVeryMomentIsNothing() {
    QVERIFY(!countDownStringFromDate(someNoon(), someNoon(), calendar()));
  }

  void theThirdReminderHasIndexThree() { QCOMPARE(indexLine(2), QStringLiteral("3")); }

  void countdownTakesTheFirstUnitThatIsLeft_data() {
    QTest::addColumn<QList<qint64>>("ahead");
    QTest::addColumn<QString>("line");
    const auto row = [](const char* name, QList<qint64> ahead, const char16_t* line) {
      QTest::newRow(name) << ahead << QString::fromUtf16(line);
    };
    row("years", {1, 2, 3, 4, 5, 6}, u"1 years, 2 months, 3 days, 4 hours, 5 minutes, 6 seconds");
    row("months", {0, 1, 1, 0, 0, 0}, u"1 months, 1 days, 0 hours, 0 minutes, 0 seconds");
    row("days", {0, 0, 2, 3, 0, 0}, u"2 days, 3 hours, 0 minutes, 0 seconds");
    row("more than a week", {0, 0, 10, 0, 0, 0}, u"10 days, 0 hours, 0 minutes, 0 seconds");
    row("hours", {0, 0, 0, 2, 0, 5}, u"2 hours, 0 minutes, 5 seconds");
    row("minutes", {0, 0, 0, 0, 1, 0}, u"1 minutes, 0 seconds");
    row("seconds", {0, 0, 0, 0, 0, 40}, u"40 seconds");
    row("last second", {0, 0, 0, 0, 0, 1}, u"1 seconds");
    row("this moment", {0, 0, 0, 0, 0, 0}, u"Expired: (null)");
    row("half a minute late", {0, 0, 0, 0, 0, -30}, u"Expired: now");
    row("hours late", {0, 0, 0, -3, -12, 0}, u"Expired: 3 h, 12 m ago");
    row("years late", {-1, -1, 0, 0, 0, 0}, u"Expired: 1 y, 1 m, 0 d ago");
  }
  void countdownTakesTheFirstUnitThatIsLeft() {
    QFETCH(QList<qint64>, ahead);
    QFETCH(QString, line);
    const Date now = someNoon();
    const Date fire = shifted(now, ahead[0], ahead[1], ahead[2], ahead[3], ahead[4], ahead[5]);
    QCOMPARE(countdownLine(fire, now, calendar()), line);
    QCOMPARE(isExpired(fire, now, calendar()), line.startsWith(u"Expired"));
  }

  void expiryAgreesWithTheLineWithinTheLastSeconds() {
    const Date now = someNoon();
    for (double left = -2; left <= 3; left += 0.125) {
      const Date fire = now.plusSeconds(left);
      QCOMPARE(isExpired(fire, now, calendar()),
               countdownLine(fire, now, calendar()).startsWith(u"Expired"));
    }
  }

  void aReminderThatFiredHasALastLineUntilItExpires() {
    const Date now = someNoon();
    const Date fired = now.plusSeconds(-90);
    QVERIFY(hasLastLine(now.plusSeconds(kHour), fired, now, calendar()));
    QVERIFY(!hasLastLine(now.plusSeconds(-1), fired, now, calendar()));
    QVERIFY(!hasLastLine(now.plusSeconds(kHour), kDistantPast, now, calendar()));
    QCOMPARE(lastLine(fired, now, calendar()), QStringLiteral("Last: 1 m ago"));
    QCOMPARE(lastLine(now, now, calendar()), QStringLiteral("Last: (null)"));
  }

  void theDateOfARepeatingReminderStandsBetweenBullets() {
    const Calendar english(calendar().timeZone(), QStringLiteral("en_US"));
    const Date fire = english.dateWithYear(2025, 3, 4, 9, 5, 0);
    QCOMPARE(absoluteDateLine(fire, false, english), QStringLiteral("Tue 3/4/2025 09:05 AM"));
    QCOMPARE(absoluteDateLine(fire, true, english),
             QStringLiteral("\u2022\u2022 Tue 3/4/2025 09:05 AM \u2022\u2022"));
    QCOMPARE(titleToolTip(fire, english), QStringLiteral("Created: Tue 3/4/2025 09:05 AM"));
  }

  void aTitleIsCutAfterFiftyCharacters() {
    const QString fifty(50, u'a');
    QCOMPARE(plainTitle(fifty, Truncation::On), fifty);
    QCOMPARE(plainTitle(fifty + u'b', Truncation::On), fifty + QStringLiteral("..."));
    QCOMPARE(plainTitle(fifty + u'b', Truncation::Off), fifty + u'b');
  }

  void theStatusTitleIsMailBeforeAlertsBeforeNothing() {
    QCOMPARE(statusTitle(3, 2), QStringLiteral("3"));
    QCOMPARE(statusTitle(0, 2), QStringLiteral("2"));
    QVERIFY(statusTitle(0, 0).isNull());
  }
};

QTEST_GUILESS_MAIN(ReminderTextsTest)
#include "reminder_texts_test.moc"
