#include "editor/reminder_editing.h"
#include "support/fakes.h"
#include "support/log_lines.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

constexpr Date kNow{762854400};

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

/// An editor without a window: the test writes and closes.
class FakeEditor final : public ReminderEditor {
 public:
  explicit FakeEditor(ReminderDraft draft) : opened(std::move(draft)), now(opened) {}

  void showWindow() override { ++timesShown; }
  ReminderDraft current() const override { return now; }
  bool isChanged() const override { return !(now == opened); }
  void tellDraftTrouble(const QString& why) override { troubles += why; }
  End end() const override { return m_end; }
  ReminderDraft result() const override { return now; }

  void write(const char* words) {
    now.reminderText = text(words);
    Q_EMIT changed();
  }
  void close(End end) {
    m_end = end;
    Q_EMIT finished();
  }

  ReminderDraft opened;
  ReminderDraft now;
  int timesShown = 0;
  QStringList troubles;

 private:
  End m_end = End::Cancelled;
};

/// One run of the program.
class Session {
 public:
  explicit Session(FakeClock& clock, std::chrono::milliseconds draftDelay = 1ms)
      : store(openUserStore(clock)),
        editing(
            *store, DraftStore(DraftStore::folderOfUser()), prompter,
            [this](ReminderDraft draft) { return make(std::move(draft)); }, draftDelay) {}

  std::unique_ptr<ReminderEditor> make(ReminderDraft draft) {
    if (refuses)
      throw std::runtime_error("no display");
    return std::make_unique<FakeEditor>(std::move(draft));
  }
  FakeEditor& editor(size_t index = 0) {
    return dynamic_cast<FakeEditor&>(*editing.reminderWindows().at(index));
  }
  Reminder reminder(qsizetype index = 0) const { return store->queue().reminder(index).value(); }
  QString add(const char* words) {
    Reminder reminder;
    reminder.reminderDescriptions = text(words);
    reminder.reminderQueue = kNow.plusSeconds(86400);
    reminder.importedUIDs = text("event");
    return store->appendReminder(reminder, ReminderStore::RecentEntry::Omit);
  }
  QStringList recent() const {
    QStringList texts;
    for (const RecentReminder& entry : store->recentReminders().entries())
      texts += entry.fullDescription;
    return texts;
  }

  FakePrompter prompter;
  bool refuses = false;
  std::unique_ptr<ReminderStore> store;
  ReminderEditing editing;
};

QStringList draftFiles() {
  return QDir(DraftStore::folderOfUser()).entryList(QDir::Files);
}

} // namespace

class ReminderEditingTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock;
  std::unique_ptr<Session> m_session;

  /// The program ends in whatever way and is started again.
  Session& restart(std::chrono::milliseconds draftDelay = 1ms) {
    m_session.reset();
    m_session = std::make_unique<Session>(m_clock, draftDelay);
    return *m_session;
  }

 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_clock.set(kNow);
    restart();
  }
  void cleanup() {
    m_session.reset();
    m_environment.reset();
  }

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

QTEST_GUILESS_MAIN(ReminderEditingTest)
#include "reminder_editing_test.moc"
