// The subsystems connected: what happens to a reminder between the tick, the alert and the store.
#include "app/alert_commands.h"
#include "app_controller_fixture.h"
#include "store/plist_reader.h"
#include "store/store_file.h"

#include <QApplication>
#include <QFileInfo>
#include <QSignalSpy>

using namespace tockwise;

class AppControllerTest : public AppControllerFixture {
  Q_OBJECT
 private Q_SLOTS:
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
};

QTEST_MAIN(AppControllerTest)
#include "app_controller_test.moc"
