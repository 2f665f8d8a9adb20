// The subsystems connected: what happens to a reminder between the tick, the alert and the store.
#include "app/alert_commands.h"
#include "app/app_controller.h"
#include "app/menu_operations.h"
#include "store/archive/text_archive.h"
#include "store/documents/document_file.h"
#include "store/plist_reader.h"
#include "store/store_file.h"
#include "support/fake_pasteboard.h"
#include "support/fakes.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace tockwise;

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
} // namespace

class AppControllerTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock;
  FakePrompter* m_prompter = nullptr;
  FakeSoundPlayer* m_sounds = nullptr;
  FakeWakeTimer* m_wakeTimer = nullptr;
  FakeWorkspace* m_workspace = nullptr;
  FakeScriptHost* m_scripts = nullptr;
  FakePasteboard* m_pasteboard = nullptr;
  ReminderStore* m_store = nullptr; // the controller's
  std::unique_ptr<AppController> m_controller;

  QString addDue(const char* words, QVariantMap options = {}) {
    options.insert(text("at"), text("2025-03-04 09:00"));
    return *m_controller->commands().add(text(words), options);
  }
  QString addLater(const char* words) {
    return *m_controller->commands().add(text(words), {{text("in"), text("2 Hours")}});
  }
  QStringList textsOfQueue() {
    QStringList texts;
    for (const QJsonValue& reminder : m_controller->commands().list())
      texts += reminder.toObject()[text("reminderDescriptions")].toString();
    return texts;
  }
  void choose(const char* action, qint64 tag = 0, const QString& reminderUUID = {},
              const char* title = "") {
    m_controller->perform({text(action), tag, reminderUUID, text(title)});
  }
  void openAlerts(int count) { QTRY_COMPARE(m_controller->alertsJson().size(), count); }
  /// prepare: what happens to the store before the controller has it.
  void startProgram(const std::function<void()>& prepare = {}) {
    auto store = openUserStore(m_clock);
    auto prompter = std::make_unique<FakePrompter>();
    auto sounds = std::make_unique<FakeSoundPlayer>();
    auto wakeTimer = std::make_unique<FakeWakeTimer>();
    m_prompter = prompter.get();
    m_sounds = sounds.get();
    m_wakeTimer = wakeTimer.get();
    auto workspace = std::make_unique<FakeWorkspace>();
    auto scripts = std::make_unique<FakeScriptHost>();
    m_workspace = workspace.get();
    m_scripts = scripts.get();
    auto pasteboard = std::make_unique<FakePasteboard>();
    m_pasteboard = pasteboard.get();
    m_store = store.get();
    if (prepare)
      prepare();
    m_controller = std::make_unique<AppController>(
        std::move(store),
        Ports{std::move(prompter), std::move(sounds), std::make_unique<FakePowerEvents>(),
              std::move(wakeTimer), std::move(workspace), std::move(scripts), std::move(pasteboard),
              std::make_unique<FakeHotKeys>(), std::make_unique<FakeLoginItems>(),
              std::make_unique<FakeNotificationCentre>(), std::make_unique<FakeSecretStore>()});
    m_controller->start();
  }
  void restart(const std::function<void()>& prepare = {}) {
    m_controller.reset();
    startProgram(prepare);
  }
  /// The event loop, in which something ends the program.
  void runToItsEnd(const std::function<void()>& end) {
    QTimer::singleShot(0, this, end);
    QCoreApplication::exec();
  }
  Reminder dueReminder(const char* words) {
    Reminder reminder;
    reminder.reminderUUID = UUIDString();
    reminder.reminderDescriptions = text(words);
    reminder.reminderQueue = m_clock.now().plusSeconds(-60);
    reminder.reminderTypes = text("regular");
    return reminder;
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_clock.set(Calendar::current().dateWithYear(2025, 3, 4, 10, 0, 0));
    startProgram();
  }
  void cleanup() {
    m_controller.reset();
    m_environment.reset();
  }

  void aDueReminderAlertsWithItsSound() {
    QSignalSpy fired(m_controller.get(), &AppController::reminderFired);
    QSignalSpy opened(m_controller.get(), &AppController::alertOpened);
    QSignalSpy changed(m_controller.get(), &AppController::queueChanged);
    const QString uuid = addDue("Tea");
    openAlerts(1);
    QCOMPARE(fired.size(), 1);
    QCOMPARE(opened.first().first().toString(), uuid);
    QVERIFY(changed.size() > 0);
    QTRY_COMPARE(m_sounds->played.size(), size_t(1));
    const QJsonObject alert = m_controller->alertsJson().first().toObject();
    QCOMPARE(alert[text("uuid")].toString(), uuid);
    QCOMPARE(alert[text("position")].toInt(), 1);
    QVERIFY(alert[text("shown")].toBool());
  }

  void aTaskIsStartedBeforeTheAlertOpens() {
    QStringList calls;
    connect(m_controller.get(), &AppController::alertOpened, this, [&] {
      calls = m_workspace->calls;
      calls += QString::number(m_scripts->scripts.size());
    });
    addDue("Tea", {{text("task"), text("web:example.org")}});
    openAlerts(1);
    QCOMPARE(calls, (QStringList{text("openURL http://example.org"), text("0")}));
    addDue("Coffee", {{text("task"), text("script:/home/me/brew.sh")}});
    openAlerts(2);
    QCOMPARE(calls.last(), text("1"));
    QCOMPARE(m_scripts->scripts.front().path, text("/home/me/brew.sh"));
  }

  void aTaskThatFailsLeavesTheAlertAndShowsNothing() {
    m_workspace->succeeds = false;
    addDue("Tea", {{text("task"), text("application:no such thing")}});
    openAlerts(1);
    QCOMPARE(m_workspace->calls, QStringList{text("launchApplication no such thing")});
    QVERIFY(m_prompter->asked.empty() && m_prompter->told.empty());
  }

  void theAlertOfADeletedReminderHasNoIdentity() {
    const QString uuid = addDue("Tea");
    openAlerts(1);
    QVERIFY(m_controller->commands().remove(uuid).ok());
    QVERIFY(m_controller->alertsJson().first().toObject()[text("uuid")].isNull());
  }

  void remindAgainOpensAnEditorWithTheText() {
    addDue("Tea");
    openAlerts(1);
    QVERIFY(alertCommand(m_controller->alerts(), text("again"), 1));
    openAlerts(0);
    QCOMPARE(textsOfQueue(), QStringList{text("Tea")});
    const auto editors = m_controller->editing().reminderWindows();
    QCOMPARE(editors.size(), size_t(1));
    const ReminderDraft draft = editors.front()->current();
    QCOMPARE(draft.purpose, EditorPurpose::RemindAgain);
    QCOMPARE(draft.reminderText, text("Tea"));
    QCOMPARE(draft.reminderUUID, QString());
    QCOMPARE(draft.reminderDate, m_clock.now());
  }

  void deletingAsksOnceAndFindsTheReminderAgain() {
    const QString first = addLater("a");
    addLater("b");
    // While the question is open the queue changes its order and grows at its head.
    m_prompter->meanwhile = [this] {
      m_prompter->meanwhile = nullptr;
      m_controller->perform({text("sortByNameReverse"), 0, {}, {}});
      m_wakeTimer->changeClock();
      addLater("c");
      QCoreApplication::processEvents();
    };
    m_prompter->answers = {0};
    m_controller->perform({text("deleteMenuItem"), 0, first, {}});
    QCOMPARE(m_prompter->asked.size(), size_t(1));
    QCOMPARE(m_prompter->asked.front().title,
             text("Are you sure you want to delete this reminder?"));
    QCOMPARE(m_prompter->asked.front().message, text("a"));
    QTRY_COMPARE(textsOfQueue(), (QStringList{text("c"), text("b")}));
  }

  void answeringNoKeepsTheReminder() {
    const QString uuid = addLater("a");
    m_prompter->answers = {1};
    m_controller->perform({text("deleteMenuItem"), 0, uuid, {}});
    QCOMPARE(textsOfQueue(), QStringList{text("a")});
  }

  void theTenOrdersAreChosenFromTheMenu() {
    addLater("b");
    addLater("a");
    m_controller->perform({text("sortByName"), 0, {}, {}});
    QTRY_COMPARE(textsOfQueue(), (QStringList{text("a"), text("b")}));
    QCOMPARE(*m_controller->commands().getPreference(text("sortType")), text("5"));
  }

  void quittingWithAlertsOpenAsks() {
    addDue("Tea");
    openAlerts(1);
    m_prompter->answers = {0};
    QVERIFY(!m_controller->mayQuit(QuitMode::Ask));
    QCOMPARE(m_prompter->asked.back().message, text("You have one alert window open."));
    QVERIFY(m_controller->mayQuit(QuitMode::Omit));
    QCOMPARE(m_prompter->asked.size(), size_t(1));
  }

  void everyQuestionHidesTheAlerts_data() {
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("answer");
    for (const char* action :
         {"deleteMenuItem", "clearQueue", "closeAllCurrentAlerts", "importCalendarEventsPrefs"}) {
      QTest::newRow(action) << text(action) << 1;
      QTest::newRow(qPrintable(text(action) + text(", other answer"))) << text(action) << 0;
    }
    QTest::newRow("quit, No") << text("quit") << 0;
  }

  void everyQuestionHidesTheAlerts() {
    QFETCH(QString, action);
    QFETCH(int, answer);
    const QString uuid = addDue("Tea");
    openAlerts(1);
    int asked = 0;
    m_prompter->meanwhile = [&] {
      ++asked;
      QVERIFY(!m_controller->alerts().entries()[0].shown);
    };
    m_prompter->answers = {answer};
    m_controller->perform({action, 0, uuid, {}});
    QCOMPARE(asked, 1);
    QVERIFY(m_controller->alerts().entries()[0].shown);
    QVERIFY(m_controller->alerts().window(0)->isVisible());
  }

  void theDraftsOfferHidesTheAlerts() {
    addDue("Tea");
    openAlerts(1);
    ReminderDraft draft;
    draft.identifier = UUIDString();
    QVERIFY(DraftStore(DraftStore::folderOfUser()).keep(draft));
    bool hidden = false;
    m_prompter->meanwhile = [&] { hidden = !m_controller->alerts().entries()[0].shown; };
    m_prompter->answers = {1};
    m_controller->editing().offerDrafts();
    QVERIFY(hidden);
    QVERIFY(m_controller->alerts().entries()[0].shown);
  }

  void anEditorsQuestionHidesTheAlerts() {
    addDue("Tea");
    openAlerts(1);
    choose("newReminder");
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto editor = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
      return window->isVisible() && window->windowTitle().startsWith(u"New Reminder");
    });
    QVERIFY(editor != windows.end());
    bool hidden = false;
    m_prompter->meanwhile = [&] { hidden = !m_controller->alerts().entries()[0].shown; };
    (*editor)->close();
    QCOMPARE(m_prompter->asked.size(), size_t(1));
    QVERIFY(hidden);
    QVERIFY(m_controller->alerts().entries()[0].shown);
  }

  void yesToQuittingLeavesTheAlertsHiddenAndForgetsThem() {
    addDue("Tea");
    openAlerts(1);
    QTRY_VERIFY(QFileInfo::exists(KeptAlerts::pathOfUser()));
    m_prompter->answers = {1};
    QVERIFY(m_controller->mayQuit(QuitMode::Ask));
    QVERIFY(!m_controller->alerts().entries()[0].shown);
    runToItsEnd([this] { m_controller->quitNow(); });
    QVERIFY(!QFileInfo::exists(KeptAlerts::pathOfUser()));
    restart();
    QVERIFY(m_controller->alertsJson().isEmpty());
  }

  void alertsOfAnEarlierSessionComeBackBeforeWhatFiresNow() {
    const QString tea = addDue("Tea");
    openAlerts(1);
    runToItsEnd([this] { m_controller->endWithSession(); });
    restart(
        [this] { m_store->appendReminder(dueReminder("Cake"), ReminderStore::RecentEntry::Omit); });
    openAlerts(2);
    const QJsonArray alerts = m_controller->alertsJson();
    QCOMPARE(alerts[0].toObject()[text("text")].toString(), text("Tea"));
    QCOMPARE(alerts[0].toObject()[text("uuid")].toString(), tea);
    QCOMPARE(alerts[1].toObject()[text("text")].toString(), text("Cake"));
    QTRY_COMPARE(m_sounds->played.size(), size_t(1)); // Cake's
  }

  void anAlertIsKeptBeforeItsReminderIsSavedAsFired() {
    addDue("Tea");
    openAlerts(1);
    const auto firedOnDisk = [this] {
      const auto bytes = readWholeFile(m_store->preferences().paths().file);
      const auto reader = plist::Reader::open(bytes.value());
      const Value counts = reader->value(*reader->find(reader->root(), u"reminderRecent"));
      const auto* array = counts.get<Value::Array>();
      return !array->empty() && array->front() == Value(1);
    };
    while (!firedOnDisk()) {
      if (QFileInfo::exists(KeptAlerts::pathOfUser()))
        break;
      QCoreApplication::processEvents();
    }
    QVERIFY(QFileInfo::exists(KeptAlerts::pathOfUser()));
  }

  void aReminderWhoseFiringWasNotSavedAlertsOnce() {
    addDue("Tea");
    openAlerts(1);
    const auto states = m_controller->alerts().states();
    runToItsEnd([this] { m_controller->endWithSession(); });
    restart([this] {
      ReminderQueue& queue = m_store->queue(); // as it was before
      QVERIFY(queue.set<&Columns::reminderRecent>(0, 0));
    });
    QTRY_COMPARE(m_sounds->played.size(), size_t(1)); // it fired again
    QCOMPARE(m_controller->alertsJson().size(), 1);
    QVERIFY(m_controller->alerts().states() == states);
  }

  void alertCommandsThatCannotBeDone_data() {
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("position");
    QTest::newRow("none open") << text("ok") << 0;
    QTest::newRow("beyond") << text("again") << 2;
    QTest::newRow("hide beyond") << text("hide") << 5;
  }
  void alertCommandsThatCannotBeDone() {
    QFETCH(QString, action);
    QFETCH(int, position);
    const auto done = alertCommand(m_controller->alerts(), action, position);
    QVERIFY(!done);
    QCOMPARE(done.error().kind, Error::Kind::NotFound);
  }

  void alertsAreHiddenAndShownByCommand() {
    addDue("Tea");
    addDue("Coffee");
    openAlerts(2);
    const auto shown = [this](int i) {
      return m_controller->alertsJson()[i].toObject()[text("shown")].toBool();
    };
    QVERIFY(alertCommand(m_controller->alerts(), text("hide"), 2));
    QVERIFY(shown(0));
    QVERIFY(!shown(1));
    QVERIFY(alertCommand(m_controller->alerts(), text("hide"), 0));
    QVERIFY(!shown(0));
    QVERIFY(alertCommand(m_controller->alerts(), text("show"), 0));
    QVERIFY(shown(0) && shown(1));
    QVERIFY(alertCommand(m_controller->alerts(), text("ok-all"), 0));
    openAlerts(0);
  }

  void newReminderOpensAnEditor() {
    choose("newReminder");
    QCOMPARE(m_controller->editing().reminderWindows().size(), size_t(1));
  }

  void aTitleOpensItsReminderWhereverItStandsNow() {
    addLater("first");
    const QString uuid = addLater("second");
    choose("showReminder", 0, uuid);
    const auto editors = m_controller->editing().reminderWindows();
    QCOMPARE(editors.size(), size_t(1));
    QCOMPARE(editors.front()->current().reminderUUID, uuid);
    QCOMPARE(editors.front()->current().reminderText, text("second"));
  }

  void aRecentEntryOpensItsTextAsANewReminder() {
    addLater("feed the cat");
    choose("recentReminder", 0, {}, "feed the cat");
    const auto editors = m_controller->editing().reminderWindows();
    QCOMPARE(editors.size(), size_t(1));
    QCOMPARE(editors.front()->current().reminderText, text("feed the cat"));
    QCOMPARE(editors.front()->current().reminderUUID, QString());
  }

  void aRecentEntryThatIsGoneOpensNothing() {
    addLater("feed the cat");
    choose("clearRecent");
    choose("recentReminder", 0, {}, "feed the cat");
    QVERIFY(m_controller->editing().reminderWindows().empty());
  }

  void copyingPutsTheRichTextOnTheClipboard() {
    AttributedText rich;
    TextAttributes bold;
    bold.font = TextFont{text("Helvetica-Bold"), 14, {}};
    rich.append(text("bold"), bold);
    const QString uuid = addLater("bold");
    ReminderQueue& queue = m_store->queue();
    QVERIFY(queue.set<&Columns::reminderRTFs>(*queue.indexOf(uuid), archiveText(rich)));
    choose("copyMenuItem", 0, uuid);
    QCOMPARE(m_pasteboard->timesSet, 1);
    QVERIFY(m_pasteboard->kept->html().contains(text("bold")));
    QVERIFY(m_pasteboard->kept->hasFormat(text("text/rtf")));
  }

  void copyingAPlainReminderLeavesTheClipboard() {
    choose("copyMenuItem", 0, addLater("plain"));
    QCOMPARE(m_pasteboard->timesSet, 0);
  }

  void clearingTheQueueAsksAndTells() {
    QSignalSpy modified(m_controller.get(), &AppController::dataModified);
    addDue("Tea");
    openAlerts(1);
    modified.clear();
    m_prompter->answers = {1};
    choose("clearQueue");
    QCOMPARE(textsOfQueue(), QStringList{text("Tea")});
    QCOMPARE(modified.size(), 0);
    m_prompter->answers = {0};
    choose("clearQueue");
    QCOMPARE(textsOfQueue(), QStringList());
    QCOMPARE(modified.size(), 1);
    openAlerts(1); // the alert of a reminder that is gone stays
  }

  void openingADocumentTellsThatTheDataChanged() {
    addLater("a");
    const QString path = m_environment->path(text("a.tockwise"));
    QVERIFY(writeDocument(path, archivedDataDictionary(m_store->queue())).ok());
    addLater("b");
    QSignalSpy modified(m_controller.get(), &AppController::dataModified);
    m_prompter->answers = {1, 0};
    QVERIFY(m_controller->documents().openFile(path));
    QCOMPARE(modified.size(), 0);
    QVERIFY(m_controller->documents().openFile(path));
    QCOMPARE(modified.size(), 1);
    QTRY_COMPARE(textsOfQueue(), QStringList{text("a")});
  }

  void aDisplayOptionIsFlippedAndChecked() {
    const auto isChecked = [this] {
      for (const MenuItem& item : m_controller->menuItems()) {
        for (const MenuItem& option : item.submenu) {
          if (option.action == text("setShowRuler"))
            return option.checked;
        }
      }
      return false;
    };
    QVERIFY(!isChecked());
    choose("setShowRuler");
    QVERIFY(isChecked());
    choose("setShowRuler");
    QVERIFY(!isChecked());
  }

  void thePreviewHoldsTheTickAndTheMenu() {
    bool isChecked = false;
    QTimer::singleShot(0, this, [&] {
      addDue("Tea");
      QCoreApplication::processEvents(); // the poke of the change
      QCOMPARE(m_controller->alertsJson().size(), 0);
      QVERIFY(!m_wakeTimer->armed);
      choose("newReminder");
      QVERIFY(m_controller->editing().reminderWindows().empty());
      choose("printAllCurrentAlerts");
      isChecked = true;
      qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject();
    });
    choose("print");
    QVERIFY(isChecked);
    QCOMPARE(m_controller->alertsJson().size(), 1); // at once
    QVERIFY(m_wakeTimer->armed);
    QCOMPARE(m_controller->printing().printWindows().size(), size_t(1));
  }

  void everyOperationThatTheMenuOffersIsCarriedOut() {
    const QSet<QString> offered = availableMenuOperations();
    QVERIFY(offered.contains(text("sortByName")));
    for (const MenuItem& item : m_controller->menuItems())
      QCOMPARE(item.enabled, item.submenu.empty() ? offered.contains(item.action) : true);
  }

  void theMenuOffersWhatTheProgramCanDo() {
    const auto items = m_controller->menuItems();
    const auto named = [&](const char* title) {
      return *std::find_if(items.begin(), items.end(),
                           [&](const MenuItem& item) { return item.title == text(title); });
    };
    QVERIFY(named("Save Reminders...").enabled);
    QVERIFY(named("Open Reminders...").enabled);
    QCOMPARE(named("Save Reminders...").action, text("selItemSaveReminders"));
    QVERIFY(named("Quit Tockwise").enabled);
    QVERIFY(named("New Reminder...").enabled);
    QVERIFY(named("Clear Queue").enabled);
    QVERIFY(named("About...").enabled);
  }
};

QTEST_MAIN(AppControllerTest)
#include "app_controller_test.moc"
