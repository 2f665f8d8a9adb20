#include "dates/date_text.h"

#include <QTest>

#include <limits>

using namespace tockwise;

class DateTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aLocalDateTimeIsReadInTheUsersZone() {
    const Calendar& calendar = Calendar::current();
    const auto date = parseLocalDateTime(u"2025-03-04 09:05", calendar);
    QVERIFY(date);
    QCOMPARE(calendar.components(*date), (DateComponents{2025, 3, 4, 9, 5, 0, 2}));
  }

  void aLeapDayIsADate() {
    QVERIFY(parseLocalDateTime(u"2024-02-29 00:00", Calendar::current()));
    QVERIFY(parseLocalDateTime(u"2000-02-29 23:59", Calendar::current()));
  }

  void whatIsNoDateIsRefused_data() {
    QTest::addColumn<QString>("text");
    for (const char* text : {"2025-02-30 08:00",
                             "2025-02-29 08:00",
                             "1900-02-29 08:00",
                             "2025-00-10 08:00",
                             "2025-13-01 08:00",
                             "2025-01-00 08:00",
                             "2025-04-31 08:00",
                             "2025-01-01 24:00",
                             "2025-01-01 08:60",
                             "0000-01-01 08:00",
                             "",
                             "2025-01-01",
                             "2025-01-01T08:00",
                             "2025-1-01 08:00",
                             "2025-01-01 8:00",
                             " 2025-01-01 08:00",
                             "2025-01-01 08:00 ",
                             "2025-01-01 08:00:00",
                             "2025-01-01 -8:00",
                             "2O25-01-01 08:00",
                             "+025-01-01 08:00"})
      QTest::newRow(text) << QString::fromLatin1(text);
    QTest::newRow("digits of another script") << QStringLiteral("٢٠٢٥-01-01 08:00");
  }
  void whatIsNoDateIsRefused() {
    QFETCH(QString, text);
    const auto date = parseLocalDateTime(text, Calendar::current());
    QVERIFY(!date);
    QCOMPARE(date.error().kind, Error::Kind::Usage);
    QVERIFY(!date.error().message.isEmpty());
  }

  void anInstantIsWrittenInUTCWithMicroseconds_data() {
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    const auto row = [](double seconds, const char* text) {
      QTest::newRow(text) << seconds << QString::fromLatin1(text);
    };
    row(762768300.0, "2025-03-04T08:05:00.000000Z");
    row(762768300.25, "2025-03-04T08:05:00.250000Z");
    row(762768299.9999999, "2025-03-04T08:05:00.000000Z");
    row(0, "2001-01-01T00:00:00.000000Z");
    row(-0.5, "2000-12-31T23:59:59.500000Z");
    row(kDistantPast.seconds, "0001-01-01T00:00:00.000000Z");
    row(kDistantFuture.seconds, "4001-01-01T00:00:00.000000Z");
    row(kDistantPast.seconds - 86400 * 366, "0000-01-01T00:00:00.000000Z");
    row(kDistantPast.seconds - 86400 * 367, "-000001-12-31T00:00:00.000000Z");
  }
  void anInstantIsWrittenInUTCWithMicroseconds() {
    QFETCH(double, seconds);
    QFETCH(QString, text);
    QCOMPARE(iso8601UTC({seconds}), text);
  }

  void whatIsNoNumberHasNoText() {
    QCOMPARE(iso8601UTC({std::numeric_limits<double>::quiet_NaN()}), QString());
    QVERIFY(iso8601UTC({std::numeric_limits<double>::infinity()}).endsWith(u'Z'));
    QVERIFY(iso8601UTC({-1e300}).startsWith(u'-'));
  }
};

QTEST_GUILESS_MAIN(DateTextTest)
#include "date_text_test.moc"
