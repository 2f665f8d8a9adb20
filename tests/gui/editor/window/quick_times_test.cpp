// Keys and pop-up that move the date of a reminder window.
#include "reminder_window_fixture.h"

#include <QAbstractItemView>
#include <QWheelEvent>
#include <QWindow>

using namespace tockwise;

class QuickTimesTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void arrowKeysStepTheDate_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("step");
    const auto row = [](const char* name, Qt::Key key, Qt::KeyboardModifiers modifiers, int step) {
      QTest::newRow(name) << int(key) << int(modifiers) << step;
    };
    row("Left", Qt::Key_Left, Qt::NoModifier, -60);
    row("Right", Qt::Key_Right, Qt::NoModifier, 60);
    row("Down", Qt::Key_Down, Qt::NoModifier, -86400);
    row("Up", Qt::Key_Up, Qt::NoModifier, 86400);
    row("Shift+Left", Qt::Key_Left, Qt::ShiftModifier, -3600);
    row("Shift+Right", Qt::Key_Right, Qt::ShiftModifier, 3600);
    row("Shift+Down", Qt::Key_Down, Qt::ShiftModifier, -2592000);
    row("Shift+Up", Qt::Key_Up, Qt::ShiftModifier, 2592000);
    row("Ctrl+Up: as without", Qt::Key_Up, Qt::ControlModifier, 86400);
    row("keypad", Qt::Key_Up, Qt::KeypadModifier | Qt::ShiftModifier, 2592000);
    row("a letter: dropped", Qt::Key_X, Qt::NoModifier, 0);
  }

  void arrowKeysStepTheDate() {
    QFETCH(int, key);
    QFETCH(int, modifiers);
    ReminderWindowFixture desk;
    desk.openEditing();
    const double before = desk.date()->date().seconds;
    QTest::keyClick(desk.panel(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    const int step = int(desk.date()->date().seconds - before);
    QTEST(step, "step");
    QVERIFY(desk.isOpen());
    QCOMPARE(desk.controller->reminderDescription(), QStringLiteral("Tea"));
  }

  void arrowKeysOnAButtonStepTheDate() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.control<QCheckBox>("emailBox")->setFocus();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(desk.date()->date().seconds, kNow.seconds + 3600 + 2592000);
    QVERIFY(desk.control<QCheckBox>("emailBox")->hasFocus());
  }

  void arrowKeysInTheTextMoveTheCursor() {
    ReminderWindowFixture desk;
    desk.openWritten();
    const int position = desk.text()->textCursor().position();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Left);
    QCOMPARE(desk.text()->textCursor().position(), position - 1);
    QCOMPARE(desk.date()->date().seconds, kNow.seconds + 3600);
  }

  void tabOnThePanelMovesOn() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.button("optionsButton")->setFocus();
    QTest::keyClick(desk.panel(), Qt::Key_Tab, Qt::ControlModifier);
    QVERIFY(desk.button("taskButton")->hasFocus());
  }

  void thePopUpListsTheQuickTimes() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QStringList titles;
    for (int item = 0; item < desk.quickPop()->count(); ++item)
      titles += desk.quickPop()->itemText(item);
    QCOMPARE(titles.join(u'|'), QStringLiteral("Quick Reminder|5 Minutes|1 Days|1 Day 2 Hours "));
    QCOMPARE(desk.quickPop()->currentIndex(), 0);
  }

  void choosingAQuickTimeCountsFromNow_data() {
    QTest::addColumn<int>("item");
    QTest::addColumn<int>("seconds");
    QTest::newRow("5 Minutes") << 1 << 300;
    QTest::newRow("1 Days: worth nothing") << 2 << 0;
    QTest::newRow("1 Day 2 Hours") << 3 << 93600;
  }

  void choosingAQuickTimeCountsFromNow() {
    QFETCH(int, item);
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.clock.advance(30);
    QTest::mouseClick(desk.quickPop(), Qt::LeftButton);
    QAbstractItemView* list = desk.quickPop()->view();
    QTRY_VERIFY(list->isVisible());
    const QRect row = list->visualRect(list->model()->index(item, 0));
    QTest::mouseMove(list->viewport(), row.center());
    QTest::qWait(QApplication::doubleClickInterval() /
                 4); // or the list takes it for the opening click
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row.center());
    const int seconds = int(desk.date()->date().seconds - kNow.seconds - 30);
    QTEST(seconds, "seconds");
    QCOMPARE(desk.quickPop()->currentIndex(), 0);
    QCOMPARE(desk.quickPop()->currentText(), QStringLiteral("Quick Reminder"));
  }

  void quickTimesAreChosenWithTheKeyboard() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Q, Qt::AltModifier);
    QAbstractItemView* list = desk.quickPop()->view();
    QTRY_VERIFY(list->isVisible());
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    QTRY_COMPARE(desk.date()->date().seconds, kNow.seconds + 300);
    QVERIFY(!list->isVisible());
    QCOMPARE(desk.quickPop()->currentIndex(), 0);
  }

  void typingFindsAQuickTime() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QAbstractItemView* list = desk.quickPop()->view();
    QTest::keyClick(desk.quickPop(), Qt::Key_5);
    QTRY_VERIFY(list->isVisible());
    QCOMPARE(desk.date()->date().seconds, kNow.seconds + 3600);
    QTest::keyClick(list, Qt::Key_Return);
    QTRY_COMPARE(desk.date()->date().seconds, kNow.seconds + 300);
  }

  void keysOpenThePopUpBeforeTheyChoose() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QTest::keyClick(desk.quickPop(), Qt::Key_Down);
    QTRY_VERIFY(desk.quickPop()->view()->isVisible());
    QCOMPARE(desk.date()->date().seconds, kNow.seconds + 3600);
    QTest::keyClick(desk.quickPop()->view(), Qt::Key_Escape);
    QTRY_VERIFY(!desk.quickPop()->view()->isVisible());
    QVERIFY(desk.isOpen());
    QCOMPARE(desk.date()->date().seconds, kNow.seconds + 3600);
  }

  void theWheelChoosesNothing() {
    ReminderWindowFixture desk;
    desk.openWritten();
    const QPointF middle = desk.quickPop()->rect().center();
    QWheelEvent turn(middle, desk.quickPop()->mapToGlobal(middle), {}, QPoint(0, -120),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(desk.quickPop(), &turn);
    QCOMPARE(desk.date()->date().seconds, kNow.seconds + 3600);
    QCOMPARE(desk.quickPop()->currentIndex(), 0);
  }
};

QTEST_MAIN(QuickTimesTest)
#include "quick_times_test.moc"
