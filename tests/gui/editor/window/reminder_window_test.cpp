#include "editor/option_window_controller.h"
#include "editor/task_window_controller.h"
#include "reminder_window_fixture.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPointer>
#include <QTextDocument>
#include <QWindow>

using namespace tockwise;

class ReminderWindowTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aNewReminderStartsBlank() {
    ReminderWindowFixture desk;
    desk.settings.setValue(QStringLiteral("sendSMS"), Value(true));
    desk.open(desk.blank());
    const ReminderWindowController& window = *desk.controller;
    QCOMPARE(desk.panel()->windowTitle(), QStringLiteral("New Reminder"));
    QVERIFY(desk.button("deleteButton")->isHidden());
    QCOMPARE(desk.button("createButton")->text(), QStringLiteral("&Create Reminder"));
    QVERIFY(desk.text()->hasFocus());
    QCOMPARE(desk.date()->date().seconds, kNow.seconds);
    QCOMPARE(window.reminderDescription(), QString());
    QCOMPARE(window.reminderRTFData(), QByteArray());
    QVERIFY(window.reminderInterval() == kBlankInterval);
    QVERIFY(window.reminderExtra() == kBlankExtra);
    QVERIFY(window.reminderOffset() == kBlankOffset);
    QVERIFY(window.reminderTask() == Task{});
    QVERIFY(window.smsState());
    QVERIFY(!window.emailState());
    QVERIFY(!window.isChanged());
    QCOMPARE(desk.button("taskButton")->text(), QStringLiteral("Add Task+"));
    QCOMPARE(desk.line("repeatLine")->text(), QStringLiteral("Does not repeat"));
  }

  void aNewReminderGetsTheDefaultTask() {
    ReminderWindowFixture desk;
    desk.settings.setValue(QStringLiteral("useDefaultTask"), Value(true));
    desk.settings.setValue(QStringLiteral("defaultTask"), Value(qint64(Task::Script)));
    desk.settings.setValue(QStringLiteral("defaultTaskPath"), Value(QStringLiteral("/a/b.sh")));
    desk.open(desk.blank());
    QVERIFY(desk.controller->reminderTask() ==
            (Task{false, Task::Script, QStringLiteral("/a/b.sh")}));
    QCOMPARE(desk.button("taskButton")->text(), QStringLiteral("Remove Task"));
    QCOMPARE(desk.line("taskLine")->text(), QStringLiteral("Script: b.sh"));
    desk.click("taskButton");
    QVERIFY(desk.controller->reminderTask() == Task{});
    QCOMPARE(desk.button("taskButton")->text(), QStringLiteral("Add Task+"));
    QVERIFY(desk.controller->isChanged());
  }

  void editingShowsTheReminder() {
    ReminderWindowFixture desk;
    desk.openEditing();
    const Reminder stored = ReminderWindowFixture::storedReminder();
    const ReminderWindowController& window = *desk.controller;
    QCOMPARE(desk.panel()->windowTitle(), QStringLiteral("Edit Reminder"));
    QVERIFY(desk.button("deleteButton")->isVisible());
    QCOMPARE(desk.button("createButton")->accessibleName(), QStringLiteral("Save"));
    QCOMPARE(desk.date()->date().seconds, stored.reminderQueue.seconds);
    QCOMPARE(window.reminderDescription(), QStringLiteral("Tea"));
    QVERIFY(window.reminderInterval() == stored.reminderIntervals);
    QVERIFY(window.reminderExtra() == stored.reminderExtras);
    QVERIFY(window.reminderOffset() == stored.reminderOffsets);
    QVERIFY(window.reminderTask() == stored.reminderTasks);
    QVERIFY(window.smsState());
    QVERIFY(!window.emailState());
    QCOMPARE(desk.button("taskButton")->text(), QStringLiteral("Remove Task"));
    QCOMPARE(window.openedWith().reminderUUID, stored.reminderUUID);
    QVERIFY(!window.isChanged());
    QVERIFY(window.current() == window.openedWith());
  }

  void theSettingChoosesTheForm() {
    ReminderWindowFixture desk;
    desk.open(desk.blank());
    QCOMPARE(desk.panel()->objectName(), QStringLiteral("ReminderWindowS"));
    desk.settings.setValue(QStringLiteral("datepicker"), Value(true));
    desk.open(desk.blank());
    QCOMPARE(desk.panel()->objectName(), QStringLiteral("ReminderWindow"));
  }

  void theRulerFollowsTheSetting() {
    ReminderWindowFixture desk;
    desk.open(desk.blank());
    QVERIFY(desk.control<QWidget>("textRuler")->isHidden());
    desk.settings.setValue(QStringLiteral("showRuler"), Value(true));
    desk.open(desk.blank());
    QVERIFY(desk.control<QWidget>("textRuler")->isVisible());
  }

  void theWindowLetsAlertsOpenInFront() {
    ReminderWindowFixture desk;
    desk.open(desk.blank());
    QVERIFY(!desk.panel()->isModal());
    QVERIFY(!desk.panel()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QCOMPARE(desk.panel()->windowType(), Qt::Window);
  }

  void textThatIsNotChangedKeepsItsBytes() {
    ReminderWindowFixture desk;
    desk.openEditing();
    const QByteArray original = desk.controller->openedWith().RTFData;
    QCOMPARE(desk.controller->reminderRTFData(), original);
    QTest::keyClicks(desk.text(), QStringLiteral("!"));
    QVERIFY(desk.controller->isChanged());
    QVERIFY(desk.controller->reminderRTFData() != original);
    QCOMPARE(desk.controller->reminderDescription(), QStringLiteral("Tea!"));
    QCOMPARE(desk.controller->current().reminderText, QStringLiteral("Tea!"));
    desk.text()->undo();
    QVERIFY(!desk.controller->isChanged());
    QCOMPARE(desk.controller->reminderRTFData(), original);
    desk.text()->redo();
    QVERIFY(desk.controller->isChanged());
  }

  void plainTextIsArchived() {
    ReminderWindowFixture desk;
    desk.openWritten();
    const auto archived = unarchiveTextStorage(desk.controller->reminderRTFData());
    QVERIFY(archived);
    QCOMPARE(archived->text, QStringLiteral("Tea"));
    QVERIFY(desk.controller->current() == desk.controller->openedWith());
  }

  void archivesThatCannotBeReadShowThePlainTextAndStay() {
    ReminderWindowFixture desk;
    ReminderDraft draft = desk.blank();
    draft.reminderText = QStringLiteral("Tea");
    draft.RTFData = QByteArray("no archive");
    desk.open(draft);
    QCOMPARE(desk.controller->reminderDescription(), QStringLiteral("Tea"));
    QCOMPARE(desk.controller->reminderRTFData(), QByteArray("no archive"));
    QTest::keyClicks(desk.text(), QStringLiteral("!"));
    QVERIFY(unarchiveTextStorage(desk.controller->reminderRTFData()));
  }

  void everyChangeIsTold() {
    ReminderWindowFixture desk;
    desk.openEditing();
    QSignalSpy changed(desk.controller.get(), &ReminderWindowController::changed);
    const auto tells = [&](const std::function<void()>& change) {
      changed.clear();
      change();
      return changed.count() > 0;
    };
    QVERIFY(tells([&] { QTest::keyClicks(desk.text(), QStringLiteral("x")); }));
    QVERIFY(tells([&] { desk.control<QCheckBox>("smsBox")->click(); }));
    QVERIFY(tells([&] { desk.control<QCheckBox>("emailBox")->click(); }));
    QVERIFY(tells([&] { desk.click("taskButton"); }));
    QVERIFY(tells([&] { desk.click("neverButton"); }));
    QVERIFY(tells([&] { QTest::keyClick(desk.panel(), Qt::Key_Up); }));
    QVERIFY(!tells([&] { QTest::keyClick(desk.panel(), Qt::Key_X); }));
  }

  void neverIsTheDistantFuture() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.click("neverButton");
    QVERIFY(desk.date()->date() == kDistantFuture);
    desk.click("createButton");
    QVERIFY(desk.prompter.asked.empty());
    QVERIFY(desk.controller->reminderDate() == kDistantFuture);
  }

  void theLineSaysWhenItFires() {
    ReminderWindowFixture desk;
    desk.openWritten();
    TonedLabel* line = desk.line("firesLine");
    QCOMPARE(line->text(), QStringLiteral("Fires Wed 3/5/2025 10:00 AM"));
    QTest::keyClick(desk.panel(), Qt::Key_Up);
    QTRY_COMPARE(line->text(), QStringLiteral("Fires Thu 3/6/2025 10:00 AM"));
    QCOMPARE(line->tone(), TonedLabel::Tone::Plain);
    desk.click("neverButton");
    QTRY_COMPARE(line->tone(), TonedLabel::Tone::Warning);
    QVERIFY(line->text().startsWith(QStringLiteral("Never fires")));
  }

  void tabLeavesTheTextForTheDate() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Tab);
    QVERIFY(desk.date()->isAncestorOf(desk.panel()->focusWidget()) ||
            desk.date() == desk.panel()->focusWidget());
    QCOMPARE(desk.controller->reminderDescription(), QStringLiteral("Tea"));
  }

  void tabReachesEveryControl() {
    ReminderWindowFixture desk;
    desk.openEditing();
    QSet<QString> reached;
    for (int press = 0; press < 60; ++press) {
      for (QWidget* widget = desk.panel()->focusWidget(); widget; widget = widget->parentWidget())
        reached += widget->objectName();
      QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Tab);
    }
    for (const char* name :
         {"reminderTextView", "reminderDate", "quickPop", "neverButton", "optionsButton",
          "taskButton", "emailBox", "smsBox", "deleteButton", "cancelButton", "createButton"})
      QVERIFY2(reached.contains(QLatin1String(name)), name);
  }

  void everyControlHasAName_data() {
    QTest::addColumn<bool>("graphical");
    QTest::newRow("compact") << false;
    QTest::newRow("graphical") << true;
  }

  void everyControlHasAName() {
    QFETCH(bool, graphical);
    ReminderWindowFixture desk;
    desk.settings.setValue(QStringLiteral("datepicker"), Value(graphical));
    desk.openEditing();
    const QList<QWidget*> widgets = desk.panel()->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
      if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus || widget->focusProxy())
        continue;
      if (widget->parentWidget()->focusProxy() == widget)
        continue; // the parent speaks for it
      const QByteArray name = widget->objectName().toUtf8();
      QVERIFY2(!name.isEmpty(), widget->metaObject()->className());
      QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
      if (!name.startsWith("qt_"))
        QVERIFY2(spoken && !spoken->text(QAccessible::Name).isEmpty(), name.constData());
    }
    QVERIFY(desk.button("createButton")->isDefault());
  }

  void theWindowFitsASmallScreen_data() { everyControlHasAName_data(); }

  void theWindowFitsASmallScreen() {
    QFETCH(bool, graphical);
    ReminderWindowFixture desk;
    desk.settings.setValue(QStringLiteral("datepicker"), Value(graphical));
    desk.settings.setValue(QStringLiteral("showRuler"), Value(true));
    desk.openEditing();
    const QSize smallest = desk.panel()->minimumSizeHint();
    QVERIFY2(smallest.width() <= 1100 && smallest.height() <= 680,
             qPrintable(QStringLiteral("%1 x %2").arg(smallest.width()).arg(smallest.height())));
  }

  void optionsAreTakenWithOK() {
    ReminderWindowFixture desk;
    desk.openEditing();
    desk.click("optionsButton");
    const QPointer<OptionWindowController> options =
        desk.panel()->findChild<OptionWindowController*>();
    QTRY_VERIFY(options && options->isVisible());
    QVERIFY(options->reminderInterval() == (Interval{0, 7, 0, 0}));
    options->repeatIntervalPopAction(5);
    options->OK();
    QVERIFY(desk.controller->reminderInterval() == (Interval{1, 0, 0, 0}));
    QVERIFY(desk.controller->reminderOffset() == (Offset{0, 1, 0}));
    QVERIFY(
        desk.line("repeatLine")->text().startsWith(QStringLiteral("Repeats every month on Mon")));
    QVERIFY(desk.controller->isChanged());
    QTRY_VERIFY(!options);
  }

  void closingTheOptionsKeepsTheRule() {
    ReminderWindowFixture desk;
    desk.openEditing();
    desk.click("optionsButton");
    const QPointer<OptionWindowController> options =
        desk.panel()->findChild<OptionWindowController*>();
    QTRY_VERIFY(options && options->isVisible());
    options->repeatIntervalPopAction(0);
    options->close();
    QVERIFY(desk.controller->reminderInterval() == (Interval{0, 7, 0, 0}));
    QVERIFY(!desk.controller->isChanged());
    QTRY_VERIFY(!options);
  }

  void aTaskIsAddedFromItsWindow() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.click("taskButton");
    const QPointer<TaskWindowController> window = desk.panel()->findChild<TaskWindowController*>();
    QTRY_VERIFY(window && window->isVisible());
    auto* path = window->findChild<QLineEdit*>(QStringLiteral("pathField"));
    path->setText(QStringLiteral("example.org"));
    window->addTaskAction();
    QVERIFY(desk.controller->reminderTask() ==
            (Task{false, Task::WebAddress, QStringLiteral("example.org")}));
    QCOMPARE(desk.button("taskButton")->text(), QStringLiteral("Remove Task"));
    QCOMPARE(desk.line("taskLine")->text(), QStringLiteral("Web Address: example.org"));
    QTRY_VERIFY(!window);
  }

  void closingTheTaskWindowLeavesTheTaskBlank() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.click("taskButton");
    const QPointer<TaskWindowController> window = desk.panel()->findChild<TaskWindowController*>();
    QTRY_VERIFY(window && window->isVisible());
    window->findChild<QLineEdit*>(QStringLiteral("pathField"))->setText(QStringLiteral("x"));
    window->close();
    QVERIFY(desk.controller->reminderTask() == Task{});
    QCOMPARE(desk.button("taskButton")->text(), QStringLiteral("Add Task+"));
    QVERIFY(!desk.controller->isChanged());
    QTRY_VERIFY(!window);
  }

  void theTaskButtonHasAKey() {
    ReminderWindowFixture desk;
    desk.openEditing();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_T, Qt::AltModifier);
    QTRY_COMPARE(desk.button("taskButton")->text(), QStringLiteral("Add Task+"));
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_T, Qt::AltModifier);
    QTRY_VERIFY(desk.panel()->findChild<TaskWindowController*>());
  }

  void aReminderIsDroppedWithItsWindowsOpen() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.click("taskButton");
    const QPointer<TaskWindowController> window = desk.panel()->findChild<TaskWindowController*>();
    QTRY_VERIFY(window && window->isVisible());
    desk.controller.reset();
    QVERIFY(!window);
  }

  void chosenLinksAreOpened() {
    ReminderWindowFixture desk;
    desk.openWritten();
    Q_EMIT desk.text()->linkChosen(QUrl(QStringLiteral("https://example.org/")));
    QCOMPARE(desk.openedURLs, QList<QUrl>{QUrl(QStringLiteral("https://example.org/"))});
  }

  void linesAreQuietInADarkTheme() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QPalette dark = desk.panel()->palette(); // its light and shadow stay those of a light theme
    dark.setColor(QPalette::Window, QColor(42, 46, 50));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Light, Qt::white);
    desk.panel()->setPalette(dark);
    auto* line = desk.control<QWidget>("lowerLine");
    QCOMPARE(line->height(), 1);
    const QColor drawn = line->grab().toImage().pixelColor(line->width() / 2, 0);
    QVERIFY(drawn.lightness() > 60);
    QVERIFY(drawn.lightness() < 128);
  }

  void severalWindowsDoNotHideEachOther() {
    ReminderWindowFixture first;
    ReminderWindowFixture second;
    ReminderWindowFixture third;
    for (ReminderWindowFixture* desk : {&first, &second, &third})
      desk->openWritten();
    const auto distance = [](const ReminderWindowFixture& a, const ReminderWindowFixture& b) {
      return (a.panel()->pos() - b.panel()->pos()).manhattanLength();
    };
    QVERIFY(distance(first, second) > 20);
    QVERIFY(distance(second, third) > 20);
    QVERIFY(distance(first, third) > 20);
    // A window that is open already stays where the user put it.
    second.panel()->move(first.panel()->pos());
    second.controller->showWindow();
    QCOMPARE(second.panel()->pos(), first.panel()->pos());
  }

  void whatTheTextRefusesIsSaid() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QVERIFY(desk.line("noticeLine")->isHidden());
    Q_EMIT desk.text()->refused(QStringLiteral("<b>a.png</b> is too large"));
    QCOMPARE(desk.line("noticeLine")->text(), QStringLiteral("<b>a.png</b> is too large"));
    QVERIFY(desk.line("noticeLine")->isVisible());
    // Whoever goes on writing can still read it; then it goes.
    QTest::keyClicks(desk.text(), QStringLiteral("x"));
    QVERIFY(desk.line("noticeLine")->isVisible());
    QVERIFY(QTest::qWaitFor([&] {
      QTest::keyClicks(desk.text(), QStringLiteral("x"));
      return desk.line("noticeLine")->isHidden();
    }));
  }

  void troubleWithTheDraftIsSaidUntilItIsOver() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.controller->tellDraftTrouble(QStringLiteral("no space left"));
    QTest::keyClicks(desk.text(), QStringLiteral("x"));
    QVERIFY(desk.line("noticeLine")->isVisible());
    QVERIFY(desk.line("noticeLine")->text().endsWith(QStringLiteral(": no space left")));
    desk.controller->tellDraftTrouble({});
    QVERIFY(desk.line("noticeLine")->isHidden());
  }
};

QTEST_MAIN(ReminderWindowTest)
#include "reminder_window_test.moc"
