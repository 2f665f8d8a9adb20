// What becomes of the queue when editors are opened and closed.
#include "reminder_editing_fixture.h"

#include <QSignalSpy>

using namespace tockwise;

class ReminderEditingTest : public ReminderEditingFixture {
  Q_OBJECT
 private Q_SLOTS:
  void aNewReminderIsAppendedWithARecentEntry() {
    Session& session = *m_session;
    session.store->preferences().setValue(text("sendEmail"), true);
    QSignalSpy changed(&session.editing, &ReminderEditing::changed);
    session.editing.newReminder();
    FakeEditor& editor = session.editor();
    QCOMPARE(editor.timesShown, 1);
    QVERIFY(editor.opened.emailState);
    QCOMPARE(editor.opened.reminderDate, kNow);
    editor.now.reminderDate = kNow.plusSeconds(60);
    editor.now.RTFData = "archived";
    editor.now.reminderInterval = {0, 7, 0, 0};
    editor.now.reminderExtra.days[0] = false;
    editor.now.reminderOffset = {0, 1, 0};
    editor.now.reminderTask = {false, Task::WebAddress, text("https://example.org")};
    editor.now.smsState = true;
    editor.write("Tea");
    m_clock.advance(5);
    editor.close(ReminderEditor::End::Created);

    Reminder expected;
    expected.reminderQueue = kNow.plusSeconds(60);
    expected.reminderDateTimeCreated = kNow.plusSeconds(5);
    expected.reminderDateTimeModified = kNow.plusSeconds(5);
    expected.reminderUUID = session.reminder().reminderUUID;
    expected.reminderDescriptions = text("Tea");
    expected.reminderRTFs = "archived";
    expected.reminderIntervals = {0, 7, 0, 0};
    expected.reminderExtras.days[0] = false;
    expected.reminderOffsets = {0, 1, 0};
    expected.reminderTasks = {false, Task::WebAddress, text("https://example.org")};
    expected.reminderSendSMS = true;
    expected.reminderSendEmail = true;
    QVERIFY(session.reminder() == expected);
    QCOMPARE(expected.reminderUUID.size(), 36);
    QCOMPARE(session.recent(), QStringList{text("Tea")});
    QCOMPARE(changed.count(), 1);
    QVERIFY(session.editing.reminderWindows().empty());
    QVERIFY(session.store->preferences().isSaved());
    QCOMPARE(restart().reminder().reminderDescriptions, text("Tea"));
  }

  void aReminderFromARecentTextAddsNoRecentEntry() {
    Session& session = *m_session;
    session.editing.newReminderS(text("Tea"));
    QCOMPARE(session.editor().opened.reminderText, text("Tea"));
    QVERIFY(session.editor().opened.RTFData.isEmpty());
    session.editor().close(ReminderEditor::End::Created);
    QCOMPARE(session.reminder().reminderDescriptions, text("Tea"));
    QCOMPARE(session.recent(), QStringList());
  }

  void remindingAgainTakesTheTextAndAddsNoRecentEntry() {
    Session& session = *m_session;
    session.store->preferences().setValue(text("sendSMS"), true);
    session.editing.remindAgain(text("Tea"), "archived");
    QCOMPARE(session.editor().opened.RTFData, QByteArray("archived"));
    QVERIFY(session.editor().opened.smsState);
    QVERIFY(!session.editor().opened.emailState);
    session.editor().close(ReminderEditor::End::Created);
    QCOMPARE(session.reminder().reminderRTFs, QByteArray("archived"));
    QCOMPARE(session.reminder().reminderTypes, text("regular"));
    QCOMPARE(session.reminder().reminderRecent, 0);
    QCOMPARE(session.recent(), QStringList());
  }

  void aCancelledEditorChangesNothing() {
    Session& session = *m_session;
    session.add("Tea");
    const Reminder before = session.reminder();
    QSignalSpy changed(&session.editing, &ReminderEditing::changed);
    session.editing.newReminder();
    session.editor().write("Coffee");
    session.editor().close(ReminderEditor::End::Cancelled);
    session.editing.showReminder(before.reminderUUID);
    session.editor().write("Coffee");
    session.editor().close(ReminderEditor::End::Cancelled);
    QCOMPARE(session.store->queue().count(), 1);
    QVERIFY(session.reminder() == before);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(session.recent(), QStringList());
  }

  void anEditedReminderIsReplacedWhereItStands() {
    Session& session = *m_session;
    const QString uuid = session.add("Tea");
    session.add("Coffee");
    ReminderQueue& queue = session.store->queue();
    QVERIFY(queue.set<&Columns::reminderRecent>(0, qint64(3)));
    QVERIFY(queue.set<&Columns::reminderTypes>(0, text("event")));
    const Reminder before = session.reminder();
    session.editing.showReminder(uuid);
    QCOMPARE(session.editor().opened.reminderText, text("Tea"));
    QVERIFY(queue.permute({1, 0})); // the tick sorts while the editor is open
    m_clock.advance(60);
    session.editor().now.smsState = true;
    session.editor().write("Green tea");
    session.editor().close(ReminderEditor::End::Created);
    Reminder expected = before;
    expected.reminderDescriptions = text("Green tea");
    expected.reminderSendSMS = true;
    expected.reminderDateTimeModified = kNow.plusSeconds(60);
    expected.reminderRecent = 0;
    expected.reminderTypes = text("regular");
    QVERIFY(session.reminder(1) == expected);
    QCOMPARE(session.reminder(0).reminderDescriptions, text("Coffee"));
    QCOMPARE(session.recent(), QStringList{text("Green tea")});
    QVERIFY(session.store->preferences().isSaved());
  }

  void deletingFromTheEditorRemovesTheReminder() {
    Session& session = *m_session;
    const QString uuid = session.add("Tea");
    session.add("Coffee");
    QSignalSpy removed(&session.editing, &ReminderEditing::removed);
    session.editing.showReminder(uuid);
    session.editor().close(ReminderEditor::End::Deleted);
    QCOMPARE(session.store->queue().count(), 1);
    QCOMPARE(session.reminder().reminderDescriptions, text("Coffee"));
    QCOMPARE(removed.takeFirst(), QVariantList{uuid});
    QCOMPARE(session.recent(), QStringList());
  }

  void editingAReminderTwiceBringsItsWindowToTheFront() {
    Session& session = *m_session;
    const QString uuid = session.add("Tea");
    session.editing.showReminder(uuid);
    session.editing.newReminder();
    session.editing.newReminder();
    session.editing.showReminder(uuid);
    QCOMPARE(session.editing.reminderWindows().size(), size_t(3));
    QCOMPARE(session.editor(0).timesShown, 2);
    session.editor(0).close(ReminderEditor::End::Cancelled);
    session.editing.showReminder(uuid);
    QCOMPARE(session.editor(2).opened.reminderUUID, uuid);
  }

  void aReminderDeletedMeanwhileCanBeKeptAsANewOne() {
    Session& session = *m_session;
    const QString uuid = session.add("Tea");
    session.editing.showReminder(uuid);
    session.editor().write("Green tea");
    QVERIFY(session.store->removeReminder(uuid));
    session.prompter.answers = {0};
    // Were the program to end now, the text would be there at the next start.
    session.prompter.meanwhile = [] { QCOMPARE(draftFiles().size(), 1); };
    session.editor().close(ReminderEditor::End::Created);
    QCOMPARE(session.prompter.asked.size(), size_t(1));
    const Question& question = session.prompter.asked.front();
    QCOMPARE(question.title, text("This reminder was deleted."));
    QCOMPARE(question.buttons, (QStringList{text("Yes"), text("No")}));
    QCOMPARE(question.escapeButton, 0);
    QCOMPARE(session.reminder().reminderDescriptions, text("Green tea"));
    QVERIFY(session.reminder().reminderUUID != uuid);
    QCOMPARE(session.recent(), QStringList{text("Green tea")});
    QCOMPARE(draftFiles(), QStringList());
  }

  void aReminderDeletedMeanwhileCanStayDeleted() {
    Session& session = *m_session;
    const QString uuid = session.add("Tea");
    session.editing.showReminder(uuid);
    QVERIFY(session.store->removeReminder(uuid));
    session.prompter.answers = {1};
    session.editor().close(ReminderEditor::End::Created);
    QCOMPARE(session.store->queue().count(), 0);
    QCOMPARE(session.recent(), QStringList());
    QCOMPARE(draftFiles(), QStringList());
  }

  void anEditorThatCannotOpenIsLogged() {
    Session& session = *m_session;
    session.refuses = true;
    QTest::ignoreMessage(QtInfoMsg, "no display");
    QTest::ignoreMessage(QtInfoMsg, "Could not open the window!");
    session.editing.newReminder();
    QTest::ignoreMessage(QtInfoMsg, "there is no reminder U");
    QTest::ignoreMessage(QtInfoMsg, "Could not open the window!");
    session.editing.showReminder(text("U"));
    QVERIFY(session.editing.reminderWindows().empty());
  }
};

QTEST_GUILESS_MAIN(ReminderEditingTest)
#include "reminder_editing_test.moc"
