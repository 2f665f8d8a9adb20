// The window of the repeat options, driven as a user drives it.
#include "editor/option_window_controller.h"
#include "support/named_child.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimeEdit>
#include <QWindow>

#include <memory>

using namespace tockwise;

Q_DECLARE_METATYPE(tockwise::Interval)

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
} // namespace

class OptionWindowTest : public QObject {
  Q_OBJECT

  std::unique_ptr<QWidget> m_editor;
  std::unique_ptr<OptionWindowController> m_window;

  template <typename T> T* find(const char* name) { return namedChild<T>(*m_window, name); }
  QComboBox* pop(const char* name) { return find<QComboBox>(name); }
  QCheckBox* day(int number) { return find<QCheckBox>(qPrintable(text("ck%1").arg(number))); }
  void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  void open(const Interval& interval, const Extra& extra = kBlankExtra,
            const Offset& offset = kBlankOffset) {
    m_window = std::make_unique<OptionWindowController>(m_editor.get(), interval, extra, offset);
    show();
  }
  void show() {
    m_window->open();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
  }
  /// Chooses an item with the keyboard, as activated() needs it.
  void choose(QComboBox* combo, int item) {
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Home);
    for (int i = 0; i < item; ++i)
      QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(combo->currentIndex(), item);
  }
  void type(QTimeEdit* picker, const char* digits) {
    picker->setFocus(Qt::TabFocusReason); // selects the hour
    QTest::keyClicks(picker, text(digits));
  }
  QString summary() { return find<QLabel>("summaryLabel")->text(); }

 private Q_SLOTS:
  void init() {
    m_editor = std::make_unique<QWidget>();
    m_editor->setGeometry(100, 100, 700, 560);
    m_editor->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
  }
  void cleanup() {
    m_window.reset();
    m_editor.reset();
  }

  void thePopUpsOfferTheirRanges_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("count");
    QTest::newRow("months") << QByteArray("monthPop") << 13;
    QTest::newRow("days") << QByteArray("dayPop") << 32;
    QTest::newRow("hours") << QByteArray("hourPop") << 25;
    QTest::newRow("minutes") << QByteArray("minutePop") << 61;
    QTest::newRow("days before") << QByteArray("dayBeforePop") << 32;
    QTest::newRow("hours before") << QByteArray("hourBeforePop") << 25;
    QTest::newRow("minutes before") << QByteArray("minuteBeforePop") << 61;
  }
  void thePopUpsOfferTheirRanges() {
    QFETCH(QByteArray, name);
    QFETCH(int, count);
    open(kBlankInterval);
    QComboBox* numbers = pop(name.constData());
    QCOMPARE(numbers->count(), count);
    for (int i = 0; i < count; ++i)
      QCOMPARE(numbers->itemText(i), QString::number(i));
  }

  void withoutValuesItOpensBlank() {
    m_window = std::make_unique<OptionWindowController>(m_editor.get());
    show();
    QCOMPARE(pop("repeatIntervalPop")->currentIndex(), 0);
    for (int number = 1; number <= 7; ++number)
      QVERIFY(day(number)->isChecked());
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderInterval(), kBlankInterval);
    QCOMPARE(m_window->reminderExtra(), kBlankExtra);
    QCOMPARE(m_window->reminderOffset(), kBlankOffset);
  }

  void theValuesGivenAreShown() {
    Extra extra;
    extra.days = {true, false, true, false, true, false, true};
    extra.times = {9, 5, 17, 30};
    open({2, 14, 3, 45}, extra, {31, 24, 60});
    QCOMPARE(pop("monthPop")->currentIndex(), 2);
    QCOMPARE(pop("dayPop")->currentIndex(), 14);
    QCOMPARE(pop("hourPop")->currentIndex(), 3);
    QCOMPARE(pop("minutePop")->currentIndex(), 45);
    for (int number = 1; number <= 7; ++number)
      QCOMPARE(day(number)->isChecked(), extra.days[size_t(number - 1)]);
    QCOMPARE(day(1)->text(), text("Sun"));
    QCOMPARE(day(7)->text(), text("Sat"));
    QCOMPARE(find<QTimeEdit>("beforeTime")->time(), QTime(9, 5));
    QCOMPARE(find<QTimeEdit>("afterTime")->time(), QTime(17, 30));
    QCOMPARE(pop("dayBeforePop")->currentText(), text("31"));
    QCOMPARE(pop("hourBeforePop")->currentText(), text("24"));
    QCOMPARE(pop("minuteBeforePop")->currentText(), text("60"));
  }

  void theStoredIntervalChoosesThePreset_data() {
    QTest::addColumn<Interval>("interval");
    QTest::addColumn<int>("preset");
    QTest::newRow("none") << Interval{0, 0, 0, 0} << 0;
    QTest::newRow("minute") << Interval{0, 0, 0, 1} << 1;
    QTest::newRow("hour") << Interval{0, 0, 1, 0} << 2;
    QTest::newRow("day") << Interval{0, 1, 0, 0} << 3;
    QTest::newRow("week") << Interval{0, 7, 0, 0} << 4;
    QTest::newRow("month") << Interval{1, 0, 0, 0} << 5;
    QTest::newRow("14 days") << Interval{0, 14, 0, 0} << 0;
    QTest::newRow("2 months") << Interval{2, 0, 0, 0} << 0;
    // The smallest unit that is 1 is found first.
    QTest::newRow("a month and a day") << Interval{1, 1, 0, 0} << 3;
    QTest::newRow("a month and 7 days") << Interval{1, 7, 0, 0} << 4;
    QTest::newRow("a day and an hour") << Interval{0, 1, 1, 0} << 2;
    QTest::newRow("one of each") << Interval{1, 1, 1, 1} << 1;
  }
  void theStoredIntervalChoosesThePreset() {
    QFETCH(Interval, interval);
    open(interval);
    QTEST(pop("repeatIntervalPop")->currentIndex(), "preset");
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderInterval(), interval);
  }

  void aPresetSetsTheInterval_data() {
    QTest::addColumn<int>("item");
    QTest::addColumn<Interval>("interval");
    QTest::newRow("none") << 0 << Interval{0, 0, 0, 0};
    QTest::newRow("minute") << 1 << Interval{0, 0, 0, 1};
    QTest::newRow("hour") << 2 << Interval{0, 0, 1, 0};
    QTest::newRow("day") << 3 << Interval{0, 1, 0, 0};
    QTest::newRow("week") << 4 << Interval{0, 7, 0, 0};
    QTest::newRow("month") << 5 << Interval{1, 0, 0, 0};
  }
  void aPresetSetsTheInterval() {
    QFETCH(int, item);
    open({3, 4, 5, 6});
    choose(pop("repeatIntervalPop"), 6);
    QTest::keyClick(pop("repeatIntervalPop"), Qt::Key_Home); // none
    for (int i = 0; i < item; ++i)
      QTest::keyClick(pop("repeatIntervalPop"), Qt::Key_Down);
    click(find<QPushButton>("okButton"));
    QTEST(m_window->reminderInterval(), "interval");
  }

  void thePresetBeyondTheSixthChangesNothing() {
    open({3, 4, 5, 6});
    m_window->repeatIntervalPopAction(6);
    m_window->repeatIntervalPopAction(-1);
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderInterval(), (Interval{3, 4, 5, 6}));
  }

  void changingAPopUpByHandLeavesNoWrongPresetStanding() {
    open({0, 7, 0, 0});
    choose(pop("dayPop"), 14);
    QCOMPARE(pop("repeatIntervalPop")->currentText(), text("Custom"));
    choose(pop("dayPop"), 1);
    QCOMPARE(pop("repeatIntervalPop")->currentText(), text("Every day"));
    choose(pop("dayPop"), 0);
    QCOMPARE(pop("repeatIntervalPop")->currentIndex(), 0);
  }

  void okTakesWhatIsChosen() {
    open(kBlankInterval);
    QSignalSpy accepted(m_window.get(), &QDialog::accepted);
    choose(pop("monthPop"), 12);
    choose(pop("dayPop"), 31);
    choose(pop("hourPop"), 24);
    choose(pop("minutePop"), 60);
    choose(pop("dayBeforePop"), 1);
    choose(pop("hourBeforePop"), 2);
    choose(pop("minuteBeforePop"), 3);
    click(day(1));
    click(day(7));
    type(find<QTimeEdit>("beforeTime"), "0930");
    type(find<QTimeEdit>("afterTime"), "1745");
    QCOMPARE(m_window->reminderInterval(), kBlankInterval); // not before OK
    QTest::keyClick(m_window.get(), Qt::Key_Return);
    QCOMPARE(accepted.size(), 1);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_window->reminderInterval(), (Interval{12, 31, 24, 60}));
    QCOMPARE(m_window->reminderOffset(), (Offset{1, 2, 3}));
    QCOMPARE(m_window->reminderExtra().days,
             (std::array<bool, 7>{false, true, true, true, true, true, false}));
    QCOMPARE(m_window->reminderExtra().times, (std::array<qint64, 4>{9, 30, 17, 45}));
  }

  void untickingAllDaysIsTakenAndToldApart() {
    open({0, 1, 0, 0});
    for (int number = 1; number <= 7; ++number)
      click(day(number));
    QVERIFY(summary().contains(u"Never alerts"));
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderExtra().days, (std::array<bool, 7>{}));
  }

  void startAndEndAtMidnightAreNoRestriction() {
    Extra extra;
    extra.times = {9, 0, 17, 0};
    open(kBlankInterval, extra);
    QVERIFY(find<QLabel>("timesNote")->text().isEmpty());
    type(find<QTimeEdit>("beforeTime"), "0000");
    type(find<QTimeEdit>("afterTime"), "0000");
    QVERIFY(find<QLabel>("timesNote")->text().contains(u"any time"));
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderExtra(), kBlankExtra);
  }

  void aStartLaterThanTheEndIsTaken() {
    open(kBlankInterval);
    type(find<QTimeEdit>("beforeTime"), "2200");
    type(find<QTimeEdit>("afterTime"), "0600");
    QVERIFY(summary().contains(u"Never alerts"));
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderExtra().times, (std::array<qint64, 4>{22, 0, 6, 0}));
  }

  void closingKeepsTheValuesGiven_data() {
    QTest::addColumn<QByteArray>("way");
    QTest::newRow("Escape") << QByteArray("escape");
    QTest::newRow("Cancel") << QByteArray("cancel");
    QTest::newRow("title bar") << QByteArray("close");
  }
  void closingKeepsTheValuesGiven() {
    QFETCH(QByteArray, way);
    Extra extra;
    extra.days[3] = false;
    open({0, 14, 0, 0}, extra, {1, 0, 0});
    QSignalSpy rejected(m_window.get(), &QDialog::rejected);
    choose(pop("repeatIntervalPop"), 5);
    click(day(1));
    choose(pop("minuteBeforePop"), 9);
    if (way == "escape")
      QTest::keyClick(m_window.get(), Qt::Key_Escape);
    else if (way == "cancel")
      click(find<QPushButton>("cancelButton"));
    else
      m_window->windowHandle()->close();
    QTRY_COMPARE(rejected.size(), 1);
    QCOMPARE(m_window->reminderInterval(), (Interval{0, 14, 0, 0}));
    QCOMPARE(m_window->reminderExtra(), extra);
    QCOMPARE(m_window->reminderOffset(), (Offset{1, 0, 0}));
  }

  void storedValuesBeyondThePopUpsAreShownAndKept() {
    Extra extra;
    extra.times = {25, 0, 9, 99};
    open({24, 90, 0, 1440}, extra, {365, 0, 61});
    QCOMPARE(pop("monthPop")->currentText(), text("24"));
    QCOMPARE(pop("dayPop")->currentText(), text("90"));
    QCOMPARE(pop("minutePop")->currentText(), text("1440"));
    QCOMPARE(pop("dayBeforePop")->currentText(), text("365"));
    QCOMPARE(pop("minuteBeforePop")->currentText(), text("61"));
    QVERIFY(find<QLabel>("timesNote")->text().contains(u"25:00"));
    QVERIFY(find<QLabel>("timesNote")->text().contains(u"09:99"));
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderInterval(), (Interval{24, 90, 0, 1440}));
    QCOMPARE(m_window->reminderExtra(), extra);
    QCOMPARE(m_window->reminderOffset(), (Offset{365, 0, 61}));
  }

  void aStoredTimeThatNoClockShowsGivesWayToTheUsers() {
    Extra extra;
    extra.times = {25, 0, 30, 0};
    open(kBlankInterval, extra);
    type(find<QTimeEdit>("beforeTime"), "0800");
    click(find<QPushButton>("okButton"));
    QCOMPARE(m_window->reminderExtra().times, (std::array<qint64, 4>{8, 0, 30, 0}));
  }

  void theSummaryFollowsEveryChange() {
    open(kBlankInterval);
    QCOMPARE(summary(), text("Does not repeat. Alerts at its date."));
    choose(pop("repeatIntervalPop"), 4);
    QVERIFY(summary().startsWith(u"Repeats every week."));
    choose(pop("dayPop"), 3);
    QVERIFY(summary().startsWith(u"Repeats every 3 days."));
    click(day(1));
    QVERIFY(summary().contains(u"Mon, Tue, Wed, Thu, Fri and Sat"));
    choose(pop("hourBeforePop"), 2);
    QVERIFY(summary().contains(u"2 hours before its date"));
  }

  void itOpensOverItsEditorAndBlocksNoOther() {
    open(kBlankInterval);
    QCOMPARE(m_window->windowModality(), Qt::WindowModal);
    const QPoint middle = m_window->frameGeometry().center();
    const QPoint editorsMiddle = m_editor->frameGeometry().center();
    QVERIFY((middle - editorsMiddle).manhattanLength() < 40);
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QCheckBox box(&other);
    box.show();
    QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {},
                      box.mapTo(&other, QPoint(8, box.height() / 2)));
    QVERIFY(box.isChecked());
  }

  void everyControlHasANameAndAPlaceInTheTabOrder() {
    open(kBlankInterval);
    const char* const order[] = {"repeatIntervalPop",
                                 "monthPop",
                                 "dayPop",
                                 "hourPop",
                                 "minutePop",
                                 "ck1",
                                 "ck2",
                                 "ck3",
                                 "ck4",
                                 "ck5",
                                 "ck6",
                                 "ck7",
                                 "beforeTime",
                                 "afterTime",
                                 "dayBeforePop",
                                 "hourBeforePop",
                                 "minuteBeforePop",
                                 "okButton",
                                 "cancelButton"};
    pop("repeatIntervalPop")->setFocus();
    for (const char* name : order) {
      QWidget* focus = m_window->focusWidget();
      QCOMPARE(focus->objectName(), text(name));
      QVERIFY(!focus->accessibleName().isEmpty());
      if (qobject_cast<QTimeEdit*>(focus))
        QTest::keyClick(focus, Qt::Key_Tab); // from the hour to the minute
      QTest::keyClick(focus, Qt::Key_Tab);
    }
  }
};

QTEST_MAIN(OptionWindowTest)
#include "option_window_test.moc"
