// The editing of reminders with its real windows.
#include "dates/calendar.h"
#include "editor/reminder_editing.h"
#include "richtext/qs_text_view.h"
#include "store/archive/text_archive.h"
#include "support/fakes.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

class Session {
 public:
  explicit Session(FakeClock& clock)
      : store(openUserStore(clock)),
        editing(*store, DraftStore(DraftStore::folderOfUser()), prompter,
                tockwise::reminderWindows({store->preferences(), prompter, clock, {}}),
                std::chrono::milliseconds(1)) {}

  /// The control of the only window that is open.
  template <typename Control> Control* find(const char* name) {
    Control* found = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window->findChild<Control*>(QLatin1String(name)))
        found = window->findChild<Control*>(QLatin1String(name));
    }
    return found;
  }
  void type(const char* words) {
    auto* view = find<QSTextView>("reminderTextView");
    QVERIFY(QTest::qWaitForWindowActive(view->window()));
    QTest::keyClicks(view, text(words));
  }
  void click(const char* button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
  Reminder reminder() const { return store->queue().reminder(0).value(); }

  FakePrompter prompter;
  std::unique_ptr<ReminderStore> store;
  ReminderEditing editing;
};

QStringList draftFiles() {
  return QDir(DraftStore::folderOfUser()).entryList(QDir::Files);
}

} // namespace

class EditingWindowsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock;
  std::unique_ptr<Session> m_session;

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_clock.set(Calendar::current().dateWithYear(2025, 3, 4, 9, 5, 30));
    m_session = std::make_unique<Session>(m_clock);
  }
  void cleanup() {
    m_session.reset();
    m_environment.reset();
  }

  void aReminderIsWrittenEditedAndDeleted() {
    Session& session = *m_session;
    session.editing.newReminder();
    session.type("Tea");
    session.click("createButton"); // due now: asks whether that is okay
    QCOMPARE(session.prompter.asked.size(), size_t(1));
    QVERIFY(session.editing.reminderWindows().empty());
    QCOMPARE(session.reminder().reminderDescriptions, text("Tea"));
    QCOMPARE(session.reminder().reminderQueue,
             Calendar::current().dateWithYear(2025, 3, 4, 9, 5, 0));
    const auto archived = unarchiveTextStorage(session.reminder().reminderRTFs);
    QVERIFY(archived);
    QCOMPARE(archived->text, text("Tea"));

    const QString uuid = session.reminder().reminderUUID;
    session.editing.showReminder(uuid);
    session.type(" time");
    session.click("createButton");
    QCOMPARE(session.reminder().reminderDescriptions, text("Tea time"));
    QCOMPARE(session.reminder().reminderUUID, uuid);

    session.editing.showReminder(uuid);
    session.click("deleteButton");
    QVERIFY(session.store->queue().isEmpty());
  }

  void whatWasBeingWrittenComesBackAfterTheEnd() {
    m_session->editing.newReminder();
    m_session->type("Tea");
    QTRY_COMPARE(draftFiles().size(), 1);
    m_session.reset();
    m_session = std::make_unique<Session>(m_clock);
    Session& session = *m_session;
    session.editing.offerDrafts();
    QCOMPARE(session.find<QSTextView>("reminderTextView")->toPlainText(), text("Tea"));
    session.type(" time");
    session.click("createButton");
    QCOMPARE(session.reminder().reminderDescriptions, text("Tea time"));
    QCOMPARE(draftFiles(), QStringList());
  }

  void undoneChangesAreNotKept() {
    Session& session = *m_session;
    session.editing.newReminder();
    session.type("T");
    QTRY_COMPARE(draftFiles().size(), 1);
    session.find<QSTextView>("reminderTextView")->undo();
    QTRY_COMPARE(draftFiles().size(), 0);
    QVERIFY(!session.editing.hasUnsaved());
    session.click("cancelButton");
    QVERIFY(session.editing.reminderWindows().empty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!session.find<QPushButton>("cancelButton"));
  }
};

QTEST_MAIN(EditingWindowsTest)
#include "editing_windows_test.moc"
