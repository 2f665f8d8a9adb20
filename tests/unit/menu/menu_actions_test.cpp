// What menu items do that needs no window: recent reminders, display options, clearing the queue.
#include "menu/menu_actions.h"
#include "support/fakes.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QTest>

using namespace tockwise;

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
} // namespace

class MenuActionsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};
  std::unique_ptr<ReminderStore> m_store;
  FakePrompter m_prompter;
  std::unique_ptr<MenuActions> m_actions;

  QString add(const QString& words,
              ReminderStore::RecentEntry recent = ReminderStore::RecentEntry::Add) {
    Reminder reminder;
    reminder.reminderQueue = m_clock.now().plusSeconds(3600);
    reminder.reminderDescriptions = words;
    return m_store->appendReminder(reminder, recent);
  }
  const std::vector<RecentReminder>& recents() const {
    return m_store->recentReminders().entries();
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_store = openUserStore(m_clock);
    m_prompter = {};
    m_actions = std::make_unique<MenuActions>(*m_store, m_prompter);
  }
  void cleanup() {
    m_actions.reset();
    m_store.reset();
    m_environment.reset();
  }

  void importingEventsSaysThatNoCalendarIsConnected() {
    add(text("first"));
    m_actions->importCalendarEventsPrefs();
    QCOMPARE(m_prompter.asked.size(), size_t(1));
    QCOMPARE(m_prompter.asked[0].title, text("No calendar is connected."));
    QCOMPARE(m_prompter.asked[0].buttons, QStringList(text("OK")));
    QCOMPARE(m_store->queue().count(), 1);
  }

  void aRecentEntryGivesItsWholeText() {
    const QString longText = QString(60, u'x');
    add(longText);
    QCOMPARE(recents().front().description, QString(40, u'x') + text("..."));
    QCOMPARE(m_actions->recentText(0, recents().front().description), longText);
  }

  void fortyCharactersStandWholeInTheListFortyOneAreCut() {
    add(QString(40, u'a'));
    add(QString(41, u'b'));
    QCOMPARE(recents()[0].description, QString(40, u'a'));
    QCOMPARE(recents()[1].description, QString(40, u'b') + text("..."));
  }

  void elevenRemindersLeaveTheLastTen() {
    for (int i = 1; i <= 11; ++i)
      add(QString::number(i));
    QCOMPARE(recents().size(), size_t(10));
    QCOMPARE(recents().front().fullDescription, text("2"));
    QCOMPARE(recents().back().fullDescription, text("11"));
  }

  void aRecentEntryIsFoundWhereItStandsNow() {
    add(text("first"));
    add(text("second"));
    const QString shown = recents()[1].description;
    for (int i = 0; i < 9; ++i) // moves both towards the front
      add(text("more"));
    QCOMPARE(m_actions->recentText(1, shown), text("second"));
  }

  void aRecentEntryThatIsGoneGivesNothing() {
    add(text("first"));
    m_actions->clearRecent();
    QVERIFY(!m_actions->recentText(0, text("first")));
    QVERIFY(!m_actions->recentText(-1, text("first")));
  }

  void aRecentEntryWithoutTextGivesNothing() {
    add(QString());
    QVERIFY(!m_actions->recentText(0, QString()));
  }

  void clearingTheRecentListIsStored() {
    add(text("first"));
    m_actions->clearRecent();
    m_store.reset();
    const auto store = openUserStore(m_clock);
    QVERIFY(store->recentReminders().entries().empty());
    QCOMPARE(store->queue().count(), 1);
  }

  void everyToggleFlipsItsSetting_data() {
    QTest::addColumn<QString>("setting");
    QTest::addColumn<bool>("before");
    QTest::newRow("setShowItemIndex") << text("showItemIndex") << false;
    QTest::newRow("setShowRichText") << text("showRichText") << true;
    QTest::newRow("truncateReminders") << text("truncateReminders") << true;
    QTest::newRow("setShowRuler") << text("showRuler") << false;
  }
  void everyToggleFlipsItsSetting() {
    QFETCH(QString, setting);
    QFETCH(bool, before);
    const QString action = QString::fromUtf8(QTest::currentDataTag());
    QVERIFY(toggleActions().contains(action));
    QCOMPARE(settingOfToggle(action), setting);
    const PreferencesStore& preferences = std::as_const(*m_store).preferences();
    QCOMPARE(preferences.boolean(setting), before);
    m_actions->toggle(setting);
    QCOMPARE(preferences.boolean(setting), !before);
    QVERIFY(preferences.value(setting).get<bool>());
    m_actions->toggle(setting);
    QCOMPARE(preferences.boolean(setting), before);
  }

  void otherOperationsAreNoToggles() { QVERIFY(!settingOfToggle(text("clearQueue"))); }

  void clearingTheQueueAsks() {
    add(text("first"));
    add(text("second"));
    m_prompter.answers = {0};
    QVERIFY(m_actions->clearQueue());
    const Question& question = m_prompter.asked.front();
    QCOMPARE(question.title, text("Clear Queue?"));
    QCOMPARE(question.message, text("Are you sure you want to clear the queue?"));
    QCOMPARE(question.buttons, QStringList({text("Yes"), text("No")}));
    QCOMPARE(question.defaultButton, 0);
    QVERIFY(m_store->queue().isEmpty());
    std::as_const(*m_store).queue().forEachColumn(
        [](const auto& column) { QVERIFY(column.isEmpty()); });
  }

  void answeringNoLeavesTheQueue() {
    add(text("first"));
    m_prompter.answers = {1};
    QVERIFY(!m_actions->clearQueue());
    QCOMPARE(m_store->queue().count(), 1);
  }

  void whatArrivesWhileTheQuestionIsOpenIsClearedToo() {
    add(text("first"));
    m_prompter.meanwhile = [this] { add(text("second")); };
    m_prompter.answers = {0};
    QVERIFY(m_actions->clearQueue());
    QVERIFY(m_store->queue().isEmpty());
  }

  void clearingAnEmptyQueueStillCounts() {
    m_prompter.answers = {0};
    QVERIFY(m_actions->clearQueue());
  }
};

QTEST_GUILESS_MAIN(MenuActionsTest)
#include "menu_actions_test.moc"
