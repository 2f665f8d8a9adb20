// What is being written is kept as a draft, and offered after the next start.
#include "reminder_editing_fixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

using namespace tockwise;
using namespace std::chrono_literals;

class EditingDraftsTest : public ReminderEditingFixture {
  Q_OBJECT
 private Q_SLOTS:
  void whatIsWrittenIsKeptSoonAndDroppedWithTheEditor() {
    Session& session = *m_session;
    session.editing.newReminder();
    QVERIFY(!session.editing.hasUnsaved());
    session.editor().write("Tea");
    QVERIFY(session.editing.hasUnsaved());
    QCOMPARE(draftFiles(), QStringList());
    QTRY_COMPARE(draftFiles().size(), 1);
    session.editor().write("Green tea");
    QTRY_COMPARE(DraftStore(DraftStore::folderOfUser()).kept().front().reminderText,
                 text("Green tea"));
    session.editor().close(ReminderEditor::End::Created);
    QCOMPARE(draftFiles(), QStringList());
    QVERIFY(!session.editing.hasUnsaved());
  }

  void moreChangesDoNotPutTheDraftOff() {
    Session& session = restart(200ms);
    session.editing.newReminder();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(QTest::qWaitFor([&] {
      session.editor().write(QByteArray::number(timer.elapsed()).constData());
      return !draftFiles().isEmpty();
    }));
  }

  void aDraftLikeWhatWasOpenedIsNotKept() {
    Session& session = *m_session;
    session.editing.newReminder();
    session.editor().write("Tea");
    QTRY_COMPARE(draftFiles().size(), 1);
    session.editor().write("");
    QTRY_COMPARE(draftFiles().size(), 0);
    QVERIFY(!session.editing.hasUnsaved());
  }

  void theEndOfTheSessionKeepsWhatIsOpen() {
    Session& session = restart(1h);
    session.editing.newReminder();
    session.editor().write("Tea");
    session.editing.newReminder(); // unchanged
    QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit"));
    QCOMPARE(draftFiles().size(), 1);
    session.editor().write("Green tea");
    QCOMPARE(restart(1h).editing.reminderWindows().size(), size_t(0));
    QCOMPARE(DraftStore(DraftStore::folderOfUser()).kept().front().reminderText, text("Green tea"));
  }

  void nothingIsAskedWhenThereAreNoDrafts() {
    m_session->editing.offerDrafts();
    QVERIFY(m_session->prompter.asked.empty());
  }

  void draftsAreGoneOnWith() {
    const QString uuid = m_session->add("Tea");
    m_session->editing.newReminder();
    m_session->editor(0).write("Coffee");
    m_session->editing.showReminder(uuid);
    m_session->editor(1).write("Green tea");
    Session& session = restart();
    session.prompter.answers = {0};
    session.editing.offerDrafts();
    QCOMPARE(session.prompter.asked.size(), size_t(1));
    QCOMPARE(session.prompter.asked.front().title,
             text("2 editors were open when Tockwise ended."));
    QCOMPARE(session.prompter.asked.front().escapeButton, 0);
    QCOMPARE(session.editing.reminderWindows().size(), size_t(2));
    QVERIFY(session.editing.hasUnsaved());
    const size_t edited = session.editor(0).opened.reminderUUID == uuid ? 0 : 1;
    QCOMPARE(session.editor(edited).opened.reminderText, text("Green tea"));
    QCOMPARE(session.editor(1 - edited).opened.reminderText, text("Coffee"));
    session.editing.showReminder(uuid);
    QCOMPARE(session.editor(edited).timesShown, 2);
    session.editor(edited).close(ReminderEditor::End::Created);
    QCOMPARE(session.reminder().reminderDescriptions, text("Green tea"));
    QCOMPARE(session.reminder().reminderUUID, uuid);
    QCOMPARE(draftFiles().size(), 1);
    session.editor().close(ReminderEditor::End::Cancelled);
    QCOMPARE(draftFiles(), QStringList());
  }

  void aDraftGoneOnWithStaysUntilItsEditorIsClosed() {
    m_session->editing.newReminder();
    m_session->editor().write("Tea");
    Session& session = restart();
    session.editing.offerDrafts();
    QCOMPARE(session.prompter.asked.front().title, text("An editor was open when Tockwise ended."));
    session.editor().write("Coffee");
    session.editor().write("Tea"); // as it was opened, but nowhere else
    session.editing.keepDrafts();
    Session& next = restart();
    next.editing.offerDrafts();
    QCOMPARE(next.editor().opened.reminderText, text("Tea"));
    // Those that are open are not offered a second time.
    next.editing.offerDrafts();
    QCOMPARE(next.editing.reminderWindows().size(), size_t(1));
    QCOMPARE(next.prompter.asked.size(), size_t(1));
  }

  void aDraftOfAReminderThatIsGoneOpensToo() {
    const QString uuid = m_session->add("Tea");
    m_session->editing.showReminder(uuid);
    m_session->editor().write("Green tea");
    QVERIFY(m_session->store->removeReminder(uuid));
    Session& session = restart();
    session.prompter.answers = {0, 0};
    session.editing.offerDrafts();
    session.editor().close(ReminderEditor::End::Created);
    QCOMPARE(session.prompter.asked.back().title, text("This reminder was deleted."));
    QCOMPARE(session.reminder().reminderDescriptions, text("Green tea"));
  }

  void unwantedDraftsAreRemoved() {
    m_session->editing.newReminder();
    m_session->editor().write("Tea");
    Session& session = restart();
    session.prompter.answers = {1};
    session.editing.offerDrafts();
    QVERIFY(session.editing.reminderWindows().empty());
    QCOMPARE(draftFiles(), QStringList());
  }

  void draftsAreAskedForOnceAtATime() {
    m_session->editing.newReminder();
    m_session->editor().write("Tea");
    Session& session = restart();
    session.prompter.meanwhile = [&] { session.editing.offerDrafts(); };
    session.editing.offerDrafts();
    QCOMPARE(session.prompter.asked.size(), size_t(1));
    QCOMPARE(session.editing.reminderWindows().size(), size_t(1));
  }

  void aDraftThatCannotBeKeptIsLoggedOnceAndTriedAgain() {
    Session& session = *m_session;
    session.editing.newReminder();
    QVERIFY(QDir().mkpath(QFileInfo(DraftStore::folderOfUser()).path()));
    QFile obstacle(DraftStore::folderOfUser());
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    static int lines;
    lines = 0;
    const auto before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) {
          lines += line.startsWith(text("Could not keep a draft: "));
        });
    session.editor().write("Tea");
    session.editing.keepDrafts();
    session.editing.keepDrafts();
    qInstallMessageHandler(before);
    QCOMPARE(lines, 1);
    QVERIFY(obstacle.remove());
    QTRY_COMPARE(draftFiles().size(), 1);
  }

  void theEditorSaysThatItsDraftCannotBeKept() {
    Session& session = *m_session;
    session.editing.newReminder();
    QVERIFY(QDir().mkpath(QFileInfo(DraftStore::folderOfUser()).path()));
    QFile obstacle(DraftStore::folderOfUser());
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    session.editor().write("Tea");
    session.editing.keepDrafts();
    QCOMPARE(session.editor().troubles.size(), 1);
    QVERIFY(!session.editor().troubles.front().isEmpty());
    QVERIFY(obstacle.remove());
    QTRY_COMPARE(session.editor().troubles.size(), 2);
    QCOMPARE(session.editor().troubles.back(), QString());
    session.editor().write("Green tea");
    session.editing.keepDrafts();
    QCOMPARE(session.editor().troubles.size(), 2);
  }

  void theDraftStaysUntilTheQueueIsSaved() {
    Session& session = restart(1h);
    session.editing.newReminder();
    session.editor().write("Tea");
    session.editing.keepDrafts();
    session.editor().write("Green tea"); // not kept yet
    const QString obstacle = PreferencesStore::Paths::ofUser().file + text(".writing");
    QVERIFY(QDir().mkpath(obstacle));
    session.editor().close(ReminderEditor::End::Created);
    QVERIFY(!session.store->preferences().isSaved());
    QCOMPARE(DraftStore(DraftStore::folderOfUser()).kept().front().reminderText, text("Green tea"));
    QVERIFY(QDir().rmdir(obstacle));
    session.store->saveDefaults();
    session.editing.newReminder();
    session.editor().close(ReminderEditor::End::Cancelled);
    QTRY_COMPARE(draftFiles().size(), 0);
  }
};

QTEST_GUILESS_MAIN(EditingDraftsTest)
#include "editing_drafts_test.moc"
