#include "prefs/quick_time.h"

#include <QTest>

using namespace tockwise;

class QuickTimeTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aTextIsWorthItsPairs_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("seconds");
    const auto row = [](const char* text, qint64 seconds) {
      QTest::newRow(text) << QString::fromUtf8(text) << seconds;
    };
    row("1 Minute", 60);
    row("5 Minutes", 300);
    row("10 Minutes", 600);
    row("15 Minutes", 900);
    row("30 Minutes", 1800);
    row("1 Hour", 3600);
    row("2 Hours", 7200);
    row("1 Day", 86400);
    row("2 Days", 172800);
    row("1 Day 2 Hours", 93600);
    row("1 Day 30 Minutes ", 88200);
    row("1 Days", 0);
    row("1 Minutes", 0);
    row("2 Hour", 0);
    row("2 hours", 0);
    row("01 Days ", 0);
    row("0 Days", 0);
    row("Days", 0);
    row("", 0);
    row("x Days", 0);
    row("5  Minutes", 0);
    row("1 Fortnight", 0);
    row("1 Day 2", 86400);
    row("1 Day 2 Hours 3", 93600);
  }
  void aTextIsWorthItsPairs() {
    QFETCH(QString, text);
    QFETCH(qint64, seconds);
    QCOMPARE(stringToSeconds(text), seconds);
  }

  void aTextThatIsWorthSomethingElseIsRemarkedOn_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("remark");
    const auto row = [](const char* text, const char* remark) {
      QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(remark);
    };
    row("1 Minute", "");
    row("90 Minutes ", "");
    row("1 Day 30 Minutes ", "");
    row("01 Days ", "adds nothing");
    row("1 Minutes", "adds nothing");
    row("soon", "adds nothing");
    row("", "adds nothing");
    row("x Days 5 Minutes ", "counts as 5 minutes");
    row("5x Minutes", "counts as 5 minutes");
    row("01 Days 1 Hour 90 Minutes", "counts as 2 hours 30 minutes");
    row("1 Day 2", "counts as 1 day");
    row("-1 Days", "lies in the past");
    row("-2 Days", "lies in the past");
  }
  void aTextThatIsWorthSomethingElseIsRemarkedOn() {
    QFETCH(QString, text);
    QFETCH(QString, remark);
    QCOMPARE(quickTimeRemark(text), remark);
  }

  void durationsAreSaidInTheirUnits() {
    QCOMPARE(durationText(0), QString());
    QCOMPARE(durationText(60), QStringLiteral("1 minute"));
    QCOMPARE(durationText(93600), QStringLiteral("1 day 2 hours"));
    QCOMPARE(durationText(2 * 86400 + 3600 + 120), QStringLiteral("2 days 1 hour 2 minutes"));
  }

  void hugeNumbersDoNotOverflow() {
    QVERIFY(stringToSeconds(QStringLiteral("99999999999999999 Days")) > 0);
    QVERIFY(stringToSeconds(QStringLiteral("9223372036854775807 Days 9223372036854775807 Days")) >
            0);
  }
};

QTEST_GUILESS_MAIN(QuickTimeTest)
#include "quick_time_test.moc"
