// The repeat options in words.
#include "editor/option_text.h"

#include <QTest>

using namespace tockwise;

Q_DECLARE_METATYPE(tockwise::Interval)
Q_DECLARE_METATYPE(tockwise::Extra)
Q_DECLARE_METATYPE(tockwise::Offset)

namespace {

Extra onDays(std::initializer_list<size_t> days, std::array<qint64, 4> times = {0, 0, 0, 0}) {
  Extra extra;
  extra.days.fill(false);
  for (const size_t day : days)
    extra.days[day] = true;
  extra.times = times;
  return extra;
}

Extra between(std::array<qint64, 4> times) {
  Extra extra;
  extra.times = times;
  return extra;
}

} // namespace

class OptionTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void optionsAreSaidInWords_data() {
    QTest::addColumn<Interval>("interval");
    QTest::addColumn<Extra>("extra");
    QTest::addColumn<Offset>("offset");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, Interval interval, Extra extra, Offset offset,
                        const char16_t* expected) {
      QTest::newRow(name) << interval << extra << offset << QString::fromUtf16(expected);
    };
    row("nothing", kBlankInterval, kBlankExtra, kBlankOffset,
        u"Does not repeat. Alerts at its date.");
    row("week", {0, 7, 0, 0}, kBlankExtra, kBlankOffset,
        u"Repeats every week. Alerts at its date.");
    row("one unit, once", {1, 0, 0, 0}, kBlankExtra, kBlankOffset,
        u"Repeats every month. Alerts at its date.");
    row("one unit, ten times", {0, 10, 0, 0}, kBlankExtra, kBlankOffset,
        u"Repeats every 10 days. Alerts at its date.");
    row("all units", {1, 2, 1, 30}, kBlankExtra, kBlankOffset,
        u"Repeats every 1 month, 2 days, 1 hour and 30 minutes. Alerts at its date.");
    row("two days", kBlankInterval, onDays({1, 3}), kBlankOffset,
        u"Does not repeat. Alerts at its date, only on Mon and Wed.");
    row("window and notice", {0, 1, 0, 0}, between({9, 0, 17, 30}), {1, 0, 5},
        u"Repeats every day. Alerts 1 day and 5 minutes before its date, only between 09:00 and "
        u"17:30.");
    row("equal times are no window", {0, 1, 0, 0}, between({9, 5, 9, 5}), kBlankOffset,
        u"Repeats every day. Alerts at its date.");
    row("days and window", kBlankInterval, onDays({0, 1, 6}, {9, 0, 17, 0}), kBlankOffset,
        u"Does not repeat. Alerts at its date, only on Mon, Sat and Sun between 09:00 and 17:00.");
    row("no day", {0, 1, 0, 0}, onDays({}), kBlankOffset,
        u"Repeats every day. Never alerts: no weekday is allowed.");
    row("across midnight", kBlankInterval, between({22, 0, 6, 0}), kBlankOffset,
        u"Does not repeat. Never alerts: the time of day ends before it begins.");
    row("a stored time that no clock shows", kBlankInterval, between({9, 0, 24, 0}), kBlankOffset,
        u"Does not repeat. Alerts at its date, only between 09:00 and 24:00.");
  }
  void optionsAreSaidInWords() {
    QFETCH(Interval, interval);
    QFETCH(Extra, extra);
    QFETCH(Offset, offset);
    QTEST(optionText(interval, extra, offset), "expected");
  }
};

QTEST_GUILESS_MAIN(OptionTextTest)
#include "option_text_test.moc"
