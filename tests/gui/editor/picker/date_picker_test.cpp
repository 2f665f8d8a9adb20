#include "dates/calendar.h"
#include "editor/clock_face.h"
#include "editor/date_picker.h"
#include "editor/date_time_field.h"
#include "editor/month_calendar.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QToolButton>

using namespace tockwise;

namespace {

Date at(int year, int month, int day, int hour = 9, int minute = 0, int second = 0) {
  return Calendar::current().dateWithYear(year, month, day, hour, minute, second);
}

class OpenPicker {
 public:
  explicit OpenPicker(DatePicker::Style style = DatePicker::Style::Graphical) {
    picker.setClock(clock);
    picker.setStyle(style);
    picker.setDate(at(2025, 3, 4, 9, 5));
    picker.show();
    picker.activateWindow();
    (void)QTest::qWaitForWindowActive(&picker);
  }
  DateTimeField* field() const { return picker.findChild<DateTimeField*>(); }
  MonthCalendar* calendar() const { return picker.findChild<MonthCalendar*>(); }
  ClockFace* face() const { return picker.findChild<ClockFace*>(); }
  QToolButton* button(const char* name) const {
    return picker.findChild<QToolButton*>(QLatin1String(name));
  }
  QString text() const { return field()->text(); }
  QString weekday() const {
    return picker.findChild<QLabel*>(QStringLiteral("weekdayLabel"))->text();
  }
  /// As if the keyboard had come to that part.
  void choose(QDateTimeEdit::Section part) {
    field()->setFocus();
    field()->setSelectedSection(part);
  }
  void press(Qt::Key key) { QTest::keyClick(field(), key); }
  void type(const char* keys) { QTest::keyClicks(field(), QString::fromLatin1(keys)); }

  FakeClock clock{at(2025, 3, 1, 12, 0, 20)};
  DatePicker picker;
};

} // namespace

class DatePickerTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() {
    qputenv("TZ", "Europe/Berlin");
    qputenv("LC_ALL", "en_US.UTF-8");
  }

  void theDateIsShownEverywhere() {
    OpenPicker open;
    QCOMPARE(open.text(), QStringLiteral("3/4/2025 9:05 AM"));
    QCOMPARE(open.weekday(), QStringLiteral("Tue"));
    QCOMPARE(open.calendar()->selectedDate(), QDate(2025, 3, 4));
    QCOMPARE(open.face()->hour(), 9);
    QCOMPARE(open.face()->minute(), 5);
    QVERIFY(open.button("morningButton")->isChecked());
    open.picker.setDate(at(2026, 12, 31, 23, 59));
    QCOMPARE(open.text(), QStringLiteral("12/31/2026 11:59 PM"));
    QCOMPARE(open.calendar()->monthShown(), 12);
    QVERIFY(open.button("afternoonButton")->isChecked());
  }

  void itFollowsTheUsersLocale() {
    qputenv("LC_ALL", "de_DE.UTF-8");
    OpenPicker open;
    QCOMPARE(open.text(), QStringLiteral("04.03.2025 09:05"));
    QCOMPARE(open.calendar()->firstDayOfWeek(), Qt::Monday);
    qputenv("LC_ALL", "en_US.UTF-8");
    open.picker.setDate(at(2025, 3, 5));
    QCOMPARE(open.text(), QStringLiteral("3/5/2025 9:00 AM"));
    QCOMPARE(open.calendar()->firstDayOfWeek(), Qt::Sunday);
  }

  void everyLocaleCanBeTypedAndRead() {
    for (const char* name : {"en_GB", "fr_FR", "ja_JP", "ko_KR", "ar_EG", "fi_FI", "en_CA", "C"}) {
      qputenv("LC_ALL", name);
      OpenPicker open;
      open.choose(QDateTimeEdit::HourSection);
      open.press(Qt::Key_Up);
      QCOMPARE(open.picker.date(), at(2025, 3, 4, 10, 5));
      QVERIFY2(open.text().contains(QStringLiteral("2025")) ||
                   QLatin1String(name) == QLatin1String("ar_EG"),
               qPrintable(open.text()));
      QVERIFY2(open.field()->hasAcceptableInput(), qPrintable(open.text()));
    }
  }

  void theCompactStyleHasOnlyTheField() {
    OpenPicker open(DatePicker::Style::Compact);
    QVERIFY(!open.calendar());
    QVERIFY(!open.face());
    open.picker.setStyle(DatePicker::Style::Graphical);
    QVERIFY(open.calendar()->isVisible());
    QCOMPARE(open.calendar()->selectedDate(), QDate(2025, 3, 4));
    open.picker.setStyle(DatePicker::Style::Compact);
    QVERIFY(!open.calendar()->isVisible());
  }

  void secondsStayUntilTheDateIsChangedByHand() {
    OpenPicker open;
    const Date odd = at(2025, 3, 4, 9, 5, 42).plusSeconds(0.25);
    open.picker.setDate(odd);
    QCOMPARE(open.picker.date(), odd);
    Q_EMIT open.calendar()->clicked(QDate(2025, 3, 4)); // the day that is chosen already
    QCOMPARE(open.picker.date(), odd);
    open.picker.stepBy(-60);
    QCOMPARE(open.picker.date(), odd.plusSeconds(-60));
    open.choose(QDateTimeEdit::MinuteSection);
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2025, 3, 4, 9, 5));
  }

  void steppingIsExactInSeconds() {
    OpenPicker open;
    QSignalSpy changes(&open.picker, &DatePicker::dateChanged);
    open.picker.setDate(at(2025, 3, 20, 9));
    open.picker.stepBy(2592000);
    QCOMPARE(open.picker.date(), at(2025, 3, 20, 9).plusSeconds(2592000));
    QCOMPARE(open.text(), QStringLiteral("4/19/2025 10:00 AM")); // summer time
    QCOMPARE(changes.count(), 2);
    open.picker.stepBy(0);
    QCOMPARE(changes.count(), 2);
  }

  void arrowKeysStepThePartAndCarryOver() {
    OpenPicker open;
    open.picker.setDate(at(2025, 12, 31, 23, 59));
    open.choose(QDateTimeEdit::MinuteSection);
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2026, 1, 1, 0, 0));
    QCOMPARE(open.field()->currentSection(), QDateTimeEdit::MinuteSection);
    open.choose(QDateTimeEdit::HourSection);
    open.press(Qt::Key_Down);
    QCOMPARE(open.picker.date(), at(2025, 12, 31, 23, 0));
    open.choose(QDateTimeEdit::MonthSection);
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2026, 1, 31, 23, 0));
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2026, 2, 28, 23, 0));
    open.choose(QDateTimeEdit::AmPmSection);
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2026, 2, 28, 11, 0));
    open.choose(QDateTimeEdit::YearSection);
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2027, 2, 28, 11, 0));
  }

  void typingChangesTheDateAtOnce() {
    OpenPicker open;
    open.choose(QDateTimeEdit::DaySection);
    open.type("17");
    QCOMPARE(open.picker.date(), at(2025, 3, 17, 9, 5));
    open.choose(QDateTimeEdit::MinuteSection);
    open.type("45");
    QCOMPARE(open.picker.date(), at(2025, 3, 17, 9, 45));
    QCOMPARE(open.calendar()->selectedDate(), QDate(2025, 3, 17));
    QCOMPARE(open.face()->minute(), 45);
  }

  void aDayOfTheCalendarKeepsTheTime() {
    OpenPicker open;
    QSignalSpy changes(&open.picker, &DatePicker::dateChanged);
    open.calendar()->setFocus();
    QTest::keyClick(open.calendar()->findChild<QTableView*>(), Qt::Key_Down);
    QCOMPARE(open.picker.date(), at(2025, 3, 11, 9, 5));
    Q_EMIT open.calendar()->clicked(QDate(2025, 4, 1));
    QCOMPARE(open.picker.date(), at(2025, 4, 1, 9, 5));
    QCOMPARE(open.text(), QStringLiteral("4/1/2025 9:05 AM"));
    QCOMPARE(changes.count(), 2);
  }

  void theClockKeepsTheDay() {
    OpenPicker open;
    open.face()->setFocus();
    QTest::keyClick(open.face(), Qt::Key_PageUp);
    QCOMPARE(open.picker.date(), at(2025, 3, 4, 10, 5));
    open.picker.setDate(at(2025, 3, 4, 23, 59));
    QTest::keyClick(open.face(), Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2025, 3, 4, 0, 0));
  }

  void theHalvesOfTheDayAreSwitched() {
    OpenPicker open;
    QTest::mouseClick(open.button("afternoonButton"), Qt::LeftButton);
    QCOMPARE(open.picker.date(), at(2025, 3, 4, 21, 5));
    QTest::mouseClick(open.button("afternoonButton"), Qt::LeftButton);
    QCOMPARE(open.picker.date(), at(2025, 3, 4, 21, 5));
    open.button("morningButton")->setFocus();
    QTest::keyClick(open.button("morningButton"), Qt::Key_Space);
    QCOMPARE(open.picker.date(), at(2025, 3, 4, 9, 5));
  }

  void theDistantFutureReadsNever() {
    OpenPicker open;
    open.picker.setDate(kDistantFuture);
    QCOMPARE(open.text(), QStringLiteral("Never"));
    QCOMPARE(open.weekday(), QString());
    QVERIFY(!open.face()->hasTime());
    QCOMPARE(open.picker.date(), kDistantFuture);
    open.picker.setDate(kDistantFuture.plusSeconds(1e13));
    QCOMPARE(open.text(), QStringLiteral("Never"));
    open.picker.stepBy(-1e13);
    open.picker.stepBy(-86400);
    QCOMPARE(open.picker.date(), kDistantFuture.plusSeconds(-86400));
    QVERIFY(open.text() != QStringLiteral("Never"));
  }

  void leavingNeverGoesOnFromTheDateBefore_data() {
    QTest::addColumn<int>("way");
    QTest::addColumn<Date>("expected");
    QTest::newRow("step") << 0 << at(2025, 3, 4, 9, 5);
    QTest::newRow("type") << 1 << at(2025, 7, 4, 9, 5);
    QTest::newRow("day") << 2 << at(2025, 3, 4, 9, 5);
    QTest::newRow("clock") << 3 << at(2025, 3, 4, 12, 1);
    QTest::newRow("half") << 4 << at(2025, 3, 4, 21, 5);
  }
  void leavingNeverGoesOnFromTheDateBefore() {
    QFETCH(int, way);
    QFETCH(Date, expected);
    OpenPicker open;
    open.picker.setDate(kDistantFuture);
    open.field()->setFocus();
    if (way == 0)
      open.press(Qt::Key_Up);
    else if (way == 1)
      open.type("7");
    else if (way == 2)
      Q_EMIT open.calendar()->clicked(open.calendar()->selectedDate());
    else if (way == 3)
      QTest::keyClick(open.face(), Qt::Key_Up);
    else
      QTest::mouseClick(open.button("afternoonButton"), Qt::LeftButton);
    QCOMPARE(open.picker.date(), expected);
    QVERIFY(open.face()->hasTime());
  }

  void leavingNeverBeginsWithTheNextMinuteWhenTheDateBeforeHasPassed() {
    OpenPicker open;
    open.clock.set(at(2025, 6, 1, 12, 0, 20));
    open.picker.setDate(kDistantFuture);
    open.field()->setFocus();
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2025, 6, 1, 12, 1));
  }

  void aTimeThatTheClockSkipsIsTheOneAfterTheChange() {
    OpenPicker open;
    open.picker.setDate(at(2025, 3, 30, 1, 30));
    open.choose(QDateTimeEdit::HourSection);
    open.press(Qt::Key_Up);
    QCOMPARE(open.picker.date(), at(2025, 3, 30, 3, 30));
    QCOMPARE(open.text(), QStringLiteral("3/30/2025 3:30 AM"));
    open.picker.setDate(at(2025, 3, 29, 2, 30));
    Q_EMIT open.calendar()->clicked(QDate(2025, 3, 30));
    QCOMPARE(open.picker.date(), at(2025, 3, 30, 3, 30));
    QCOMPARE(open.text(), QStringLiteral("3/30/2025 3:30 AM"));
  }

  void ofAnHourThatComesTwiceTheShownOneStays() {
    OpenPicker open;
    const Date second = at(2025, 10, 26, 2, 30).plusSeconds(3600);
    open.picker.setDate(second);
    QCOMPARE(open.picker.date(), second);
    QCOMPARE(open.text(), QStringLiteral("10/26/2025 2:30 AM"));
    open.choose(QDateTimeEdit::MinuteSection);
    open.type("45");
    QCOMPARE(open.picker.date(), second.plusSeconds(900));
    open.choose(QDateTimeEdit::HourSection);
    open.press(Qt::Key_Down);
    QCOMPARE(open.picker.date(), second.plusSeconds(900 - 3600));
    QCOMPARE(open.text(), QStringLiteral("10/26/2025 2:45 AM"));
  }

  void aMoveToAnotherZoneShowsTheSameInstant() {
    OpenPicker open;
    const Date date = open.picker.date();
    QSignalSpy changes(&open.picker, &DatePicker::dateChanged);
    qputenv("TZ", "America/New_York");
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&open.picker, &activated);
    QCOMPARE(open.text(), QStringLiteral("3/4/2025 3:05 AM"));
    QCOMPARE(open.picker.date(), date);
    QCOMPARE(changes.count(), 0);
  }

  void datesBeyondTheFieldAreKept() {
    OpenPicker open;
    for (const Date date : {kDistantPast, Date{-1e12}, Date{62e9}}) {
      open.picker.setDate(date);
      QCOMPARE(open.picker.date(), date);
      QVERIFY(open.text() != QStringLiteral("Never"));
    }
  }

  void theKeyboardComesToTheField() {
    OpenPicker open;
    open.face()->setFocus();
    open.picker.setFocus();
    QVERIFY(open.field()->hasFocus());
  }
};

QTEST_MAIN(DatePickerTest)
#include "date_picker_test.moc"
