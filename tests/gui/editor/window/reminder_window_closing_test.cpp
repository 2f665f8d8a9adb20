#include "alerts/alert_windows.h"
#include "platform/message_prompter.h"
#include "reminder_window_fixture.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QTimer>
#include <QWindow>

using namespace tockwise;

class ReminderWindowClosingTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void creatingABlankReminderIsRefused() {
    ReminderWindowFixture desk;
    desk.open(desk.blank());
    desk.click("createButton");
    compareQuestion(desk.asked(), "No Reminder",
                    "Your reminder is blank. Please type in a reminder.", "OK");
    QVERIFY(desk.isOpen());
    QVERIFY(desk.text()->hasFocus());
  }

  void blanksAndPicturesAreText_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("blank") << QStringLiteral(" ");
    QTest::newRow("attachment") << QString(QChar(AttributedText::kAttachmentCharacter));
  }

  void blanksAndPicturesAreText() {
    QFETCH(QString, text);
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.text()->selectAll();
    desk.text()->textCursor().insertText(text);
    desk.click("createButton");
    QVERIFY(desk.prompter.asked.empty());
    QVERIFY(!desk.isOpen());
  }

  void creatingWaitsForThePictureBeingRead() {
    ReminderWindowFixture desk;
    desk.openWritten();
    const QString path = desk.environment.path(QStringLiteral("a.png"));
    QImage picture(20, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(path));
    desk.text()->insertFiles({path});
    QVERIFY(desk.text()->isLoading());
    desk.click("createButton");
    QVERIFY(desk.isOpen());
    QTRY_VERIFY(!desk.isOpen());
    QCOMPARE(desk.controller->reminderDescription(),
             QStringLiteral("Tea") + QChar(AttributedText::kAttachmentCharacter));
  }

  void creatingStopsWhenThePictureIsRefused() {
    ReminderWindowFixture desk;
    desk.openWritten();
    const QString path = desk.environment.path(QStringLiteral("a.png"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no picture") > 0);
    file.close();
    QSignalSpy refused(desk.text(), &QSTextView::refused);
    desk.text()->insertFiles({path});
    desk.click("createButton");
    QTRY_COMPARE(refused.count(), 1);
    QTRY_VERIFY(!desk.text()->isLoading());
    QVERIFY(desk.isOpen());
    QCOMPARE(desk.line("noticeLine")->tone(), TonedLabel::Tone::Warning);
    desk.click("createButton");
    QVERIFY(!desk.isOpen());
  }

  void aDateThatIsNotAheadIsAskedAbout_data() {
    QTest::addColumn<double>("seconds");
    QTest::newRow("now") << 0.0;
    QTest::newRow("past") << -1.0;
  }

  void aDateThatIsNotAheadIsAskedAbout() {
    QFETCH(double, seconds);
    ReminderWindowFixture desk;
    desk.openWritten();
    QSignalSpy finished(desk.controller.get(), &ReminderWindowController::finished);
    desk.date()->setDate(kNow.plusSeconds(seconds));
    desk.prompter.answers = {kNo};
    desk.click("createButton");
    const Question question = desk.asked();
    compareQuestion(question, "Your date is set in the past.", "Is this okay?", "OK|NO");
    QCOMPARE(question.defaultButton, 0);
    QVERIFY(desk.isOpen());
    QCOMPARE(finished.count(), 0);

    desk.prompter.answers = {kYes};
    desk.click("createButton");
    QVERIFY(!desk.isOpen());
    QCOMPARE(finished.count(), 1);
    QVERIFY(!desk.controller->didCancel());
    QVERIFY(!desk.controller->didDelete());
  }

  void aDateAheadIsNotAskedAbout() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.date()->setDate(kNow.plusSeconds(0.5));
    desk.click("createButton");
    QVERIFY(desk.prompter.asked.empty());
    QVERIFY(!desk.isOpen());
  }

  void secondsAreCut_data() {
    QTest::addColumn<double>("picked");
    QTest::addColumn<double>("stored");
    QTest::newRow("10:15:42") << 762858942.0 << 762858900.0;
    QTest::newRow("fraction") << 762858900.25 << 762858900.0;
    QTest::newRow("whole minute") << 762858900.0 << 762858900.0;
    // 02:30:42 in Berlin for the second time, on 2025-10-26.
    QTest::newRow("after the clock change") << 783135042.0 << 783135000.0;
    QTest::newRow("never") << kDistantFuture.seconds << kDistantFuture.seconds;
  }

  void secondsAreCut() {
    QFETCH(double, picked);
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.date()->setDate(Date{picked});
    desk.click("createButton");
    QVERIFY(!desk.isOpen());
    const double stored = desk.controller->reminderDate().seconds;
    QTEST(stored, "stored");
  }

  void keysCreateFromTheText_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("Ctrl+Return") << int(Qt::Key_Return);
    QTest::newRow("Ctrl+Enter") << int(Qt::Key_Enter);
  }

  void keysCreateFromTheText() {
    QFETCH(int, key);
    ReminderWindowFixture desk;
    desk.openWritten();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key(key), Qt::ControlModifier);
    QVERIFY(!desk.isOpen());
    QCOMPARE(desk.controller->reminderDescription(), QStringLiteral("Tea"));
  }

  void returnInTheTextWritesALine() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Return);
    QTest::keyClicks(desk.text(), QStringLiteral("milk"));
    QVERIFY(desk.isOpen());
    QCOMPARE(desk.controller->reminderDescription(), QStringLiteral("Tea\nmilk"));
  }

  void returnElsewhereCreates() {
    ReminderWindowFixture desk;
    desk.openWritten();
    desk.control<QCheckBox>("smsBox")->setFocus();
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Return);
    QVERIFY(!desk.isOpen());
    QVERIFY(!desk.controller->didCancel());
  }

  void cancellingAsks_data() {
    QTest::addColumn<int>("setting"); // -1: absent
    QTest::addColumn<bool>("asks");
    QTest::newRow("absent") << -1 << true;
    QTest::newRow("YES") << 1 << true;
    QTest::newRow("NO") << 0 << false;
  }

  void cancellingAsks() {
    QFETCH(int, setting);
    QFETCH(bool, asks);
    ReminderWindowFixture desk;
    if (setting >= 0)
      desk.settings.setValue(QStringLiteral("showUndoChangesAlert"), Value(setting == 1));
    desk.openWritten();
    QSignalSpy finished(desk.controller.get(), &ReminderWindowController::finished);
    if (asks) {
      desk.prompter.answers = {kNo};
      desk.click("cancelButton");
      compareQuestion(desk.asked(), "Undo changes?",
                      "Are you sure you want to undo any changes you made to this reminder?",
                      "Yes|No");
      QVERIFY(desk.isOpen());
      QVERIFY(!desk.controller->didCancel());
      desk.prompter.answers = {kYes};
    }
    desk.click("cancelButton");
    QCOMPARE(desk.prompter.asked.size(), asks ? 1U : 0U);
    QVERIFY(!desk.isOpen());
    QVERIFY(desk.controller->didCancel());
    QVERIFY(!desk.controller->didDelete());
    QCOMPARE(finished.count(), 1);
  }

  void escapeAndTheWindowManagerCancel_data() {
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Escape") << true;
    QTest::newRow("close button") << false;
  }

  void escapeAndTheWindowManagerCancel() {
    QFETCH(bool, byKey);
    ReminderWindowFixture desk;
    desk.openWritten();
    const auto leave = [&] {
      if (byKey)
        QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Escape);
      else
        desk.panel()->windowHandle()->close();
    };
    desk.prompter.answers = {kNo, kYes};
    leave();
    QCOMPARE(desk.asked().title, QStringLiteral("Undo changes?"));
    QVERIFY(desk.isOpen());
    leave();
    QVERIFY(!desk.isOpen());
    QVERIFY(desk.controller->didCancel());
  }

  void deletingAsks() {
    ReminderWindowFixture desk;
    desk.openEditing();
    QSignalSpy finished(desk.controller.get(), &ReminderWindowController::finished);
    desk.prompter.answers = {kNo, kYes};
    desk.click("deleteButton");
    compareQuestion(desk.asked(), "Delete reminder?",
                    "Are you sure you want to delete this reminder?", "Yes|No");
    QVERIFY(desk.isOpen());
    QVERIFY(!desk.controller->didDelete());
    desk.click("deleteButton");
    QVERIFY(!desk.isOpen());
    QVERIFY(desk.controller->didDelete());
    QVERIFY(!desk.controller->didCancel());
    QCOMPARE(finished.count(), 1);
  }

  void aWindowThatIsGoneBeforeTheAnswerAsksNothingMore_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("create") << QByteArray("createButton");
    QTest::newRow("cancel") << QByteArray("cancelButton");
    QTest::newRow("delete") << QByteArray("deleteButton");
    QTest::newRow("Escape") << QByteArray();
  }

  void aWindowThatIsGoneBeforeTheAnswerAsksNothingMore() {
    QFETCH(QByteArray, name);
    ReminderWindowFixture desk;
    desk.openEditing();
    desk.date()->setDate(kNow);
    QSignalSpy finished(desk.controller.get(), &ReminderWindowController::finished);
    desk.prompter.meanwhile = [&] { desk.controller.reset(); };
    if (name.isEmpty())
      QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Escape);
    else
      QTest::mouseClick(desk.button(name.constData()), Qt::LeftButton);
    QVERIFY(!desk.controller);
    QCOMPARE(desk.prompter.asked.size(), 1U);
    QCOMPARE(finished.count(), 0);
  }

  void aWindowThatGoesTakesItsQuestionAlong() {
    ReminderWindowFixture desk;
    MessagePrompter prompter;
    auto controller = std::make_unique<ReminderWindowController>(
        desk.blank(),
        ReminderWindowController::Surroundings{desk.settings, prompter, desk.clock, {}});
    controller->showWindow();
    QVERIFY(QTest::qWaitForWindowActive(controller->window()));
    QTimer::singleShot(0, this, [&] { controller.reset(); });
    QTest::keyClick(controller->window()->windowHandle(), Qt::Key_Escape);
    QVERIFY(!controller);
    QVERIFY(!QApplication::activeModalWidget());
  }

  void alertsAreDismissedWhileAReminderIsWritten() {
    ReminderWindowFixture desk;
    desk.openWritten();
    ReminderQueue queue;
    FakeSoundPlayer player;
    AlertSounds sounds{desk.settings, player, {}, AlertSounds::systemRandom()};
    AlertWindows alerts{queue, sounds, desk.prompter};
    AlertRequest request;
    request.reminder = QStringLiteral("Tea");
    alerts.open(request);
    // Through the window system, where a modal window would block it.
    QWidget* alert = alerts.window(0);
    auto* ok = alert->findChild<QPushButton*>(QStringLiteral("okButton"));
    QTest::mouseClick(alert->windowHandle(), Qt::LeftButton, {},
                      ok->mapTo(alert, ok->rect().center()));
    QCOMPARE(alerts.count(), 0);
    QVERIFY(desk.isOpen());
    desk.panel()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(desk.panel()));
    QTest::keyClick(desk.panel()->windowHandle(), Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(!desk.isOpen());
  }

  void theKeyboardComesBackFromAQuestion() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QWidget alert;
    desk.prompter.answers = {kNo};
    desk.prompter.meanwhile = [&] {
      alert.show();
      alert.activateWindow();
      QVERIFY(QTest::qWaitForWindowActive(&alert));
    };
    desk.click("cancelButton");
    QVERIFY(desk.isOpen());
    QTRY_VERIFY(desk.panel()->isActiveWindow());
  }

  void theKeyboardComesBackFromTheWindowsAbove_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("options") << QByteArray("optionsButton");
    QTest::newRow("task") << QByteArray("taskButton");
  }

  void theKeyboardComesBackFromTheWindowsAbove() {
    QFETCH(QByteArray, name);
    ReminderWindowFixture desk;
    desk.openWritten();
    QTest::mouseClick(desk.button(name.constData()), Qt::LeftButton);
    auto* above = desk.panel()->findChild<QDialog*>();
    QVERIFY(above);
    QWidget alert;
    alert.show();
    alert.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&alert));
    above->reject();
    QTRY_VERIFY(desk.panel()->isActiveWindow());
  }

  void nothingElseIsAskedWhileAQuestionIsOpen() {
    ReminderWindowFixture desk;
    desk.openEditing();
    desk.prompter.answers = {kNo};
    desk.prompter.meanwhile = [&] {
      desk.panel()->close();
      desk.button("createButton")->click();
      desk.button("deleteButton")->click();
    };
    desk.click("cancelButton");
    QCOMPARE(desk.asked().title, QStringLiteral("Undo changes?"));
    QVERIFY(desk.isOpen());
  }

  void aClosedWindowDoesNotFinishAgain() {
    ReminderWindowFixture desk;
    desk.openWritten();
    QSignalSpy finished(desk.controller.get(), &ReminderWindowController::finished);
    desk.click("createButton");
    desk.panel()->reject();
    desk.button("createButton")->click();
    QCOMPARE(finished.count(), 1);
    QVERIFY(desk.prompter.asked.empty());
    QVERIFY(!desk.controller->didCancel());
  }

  void whoeverHearsOfTheEndMayDropTheWindow() {
    ReminderWindowFixture desk;
    desk.openWritten();
    connect(desk.controller.get(), &ReminderWindowController::finished, this,
            [&] { desk.controller.release()->deleteLater(); });
    desk.click("createButton");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!desk.controller);
  }
};

QTEST_MAIN(ReminderWindowClosingTest)
#include "reminder_window_closing_test.moc"
