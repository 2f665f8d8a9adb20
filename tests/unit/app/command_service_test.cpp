#include "app/command_service.h"
#include "store/archive/text_archive.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QTest>

using namespace tockwise;

namespace {
QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}
QVariantMap in(const char* time) {
  return {{text("in"), text(time)}};
}
} // namespace

class CommandServiceTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};
  std::unique_ptr<ReminderStore> m_store;
  std::unique_ptr<CommandService> m_commands;
  int m_changes = 0;

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    m_clock.set(Date::fromUnixSeconds(1741079742));
    m_store = openUserStore(m_clock);
    m_changes = 0;
    m_commands = std::make_unique<CommandService>(*m_store, [this] { ++m_changes; });
  }
  void cleanup() {
    m_commands.reset();
    m_store.reset();
    m_environment.reset();
  }

  void addingReturnsTheIdentifierAndLeavesARecentEntry() {
    const auto uuid = m_commands->add(text("Tea"), in("1 Hour"));
    QVERIFY(uuid.ok());
    QCOMPARE(m_store->queue()->reminderUUID.values(), (std::vector<QString>{*uuid}));
    QCOMPARE(m_store->recentReminders().entries().front().fullDescription, text("Tea"));
    QCOMPARE(m_changes, 1);
    QVERIFY(m_store->preferences().isSaved());
  }

  void addingNeedsExactlyOneTime() {
    QVERIFY(!m_commands->add(text("Tea"), {}));
    QVERIFY(!m_commands->add(
        text("Tea"), {{text("in"), text("1 Hour")}, {text("at"), text("2030-01-01 10:00")}}));
    QVERIFY(!m_commands->add(QString(), in("1 Hour")));
    QVERIFY(m_store->queue().isEmpty());
    QCOMPARE(m_changes, 0);
  }

  void aNewReminderTakesTheUsersDefaults() {
    m_store->preferences().setValue(text("sendEmail"), Value(true));
    m_store->preferences().setValue(text("useDefaultTask"), Value(true));
    m_store->preferences().setValue(text("defaultTask"), Value(2));
    m_store->preferences().setValue(text("defaultTaskPath"), Value(text("/tmp/a.txt")));
    QVERIFY(m_commands->add(text("Tea"), in("1 Hour")).ok());
    const Reminder reminder = *m_store->queue().reminder(0);
    QVERIFY(reminder.reminderSendEmail);
    QVERIFY(!reminder.reminderSendSMS);
    QCOMPARE(reminder.reminderTasks, (Task{false, 2, text("/tmp/a.txt")}));
  }

  void aReminderIsFoundByPositionAndIdentifier() {
    const QString uuid = *m_commands->add(text("Tea"), in("1 Hour"));
    QCOMPARE((*m_commands->show(text("1")))[text("reminderUUID")].toString(), uuid);
    QVERIFY(m_commands->show(uuid.toLower()).ok());
    for (const char* wrong : {"0", "2", "-1", "nonsense", ""}) {
      const auto shown = m_commands->show(text(wrong));
      QVERIFY(!shown);
      QCOMPARE(shown.error().kind, Error::Kind::NotFound);
    }
  }

  void showingTellsTheRunsOfTheRichText() {
    QVERIFY(m_commands->add(text("Tea"), in("1 Hour")).ok());
    QVERIFY((*m_commands->show(text("1")))[text("richText")].isNull());
    AttributedText rich;
    rich.text = text("Tea");
    rich.runs = {{3, {}}};
    rich.runs[0].attributes.font = TextFont{text("Georgia-Bold"), 14, {}};
    QVERIFY(m_store->queue().set<&Columns::reminderRTFs>(0, archiveText(rich)));
    const QJsonArray runs = (*m_commands->show(text("1")))[text("richText")].toArray();
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs[0].toObject()[text("text")].toString(), text("Tea"));
    const QJsonObject attributes = runs[0].toObject()[text("attributes")].toObject();
    QCOMPARE(attributes[text("font")].toString(), text("Georgia-Bold"));
    QCOMPARE(attributes[text("size")].toDouble(), 14.0);
    QVERIFY(m_store->queue().set<&Columns::reminderRTFs>(0, QByteArray("damaged")));
    QVERIFY((*m_commands->show(text("1")))[text("richText")].isNull());
  }

  void editingResetsTheFiringCountAndKeepsTheIdentifier() {
    const QString uuid = *m_commands->add(text("Tea"), in("1 Hour"));
    QVERIFY(m_store->queue().set<&Columns::reminderRecent>(0, qint64(3)));
    m_clock.advance(100);
    QCOMPARE(*m_commands->edit(text("1"), {{text("text"), text("Coffee")}}), uuid);
    const Reminder reminder = *m_store->queue().reminder(0);
    QCOMPARE(reminder.reminderDescriptions, text("Coffee"));
    QCOMPARE(reminder.reminderRecent, 0);
    QCOMPARE(reminder.reminderDateTimeModified, m_clock.now());
    QVERIFY(reminder.reminderDateTimeCreated < m_clock.now());
  }

  void listHasTheSixteenStoredKeys() {
    QVERIFY(m_commands->add(text("Tea"), in("1 Hour")).ok());
    const QJsonObject reminder = m_commands->list().first().toObject();
    QCOMPARE(reminder.size(), 16);
    QVERIFY(reminder[text("reminderDateTimeFired")].isNull());
    QCOMPARE(reminder[text("reminderDateTimeCreated")].toString(),
             text("2025-03-04T09:15:42.000000Z"));
    QCOMPARE(reminder[text("reminderTasks")].toObject()[text("nil")].toString(), text("nil"));
    QCOMPARE(reminder[text("reminderIntervals")].toArray().size(), 4);
    QCOMPARE(reminder[text("reminderExtras")].toObject()[text("days")].toArray().size(), 7);
  }

  void settingsAreTypedByTheTable() {
    QVERIFY(m_commands->setPreference(text("useCountdown"), {text("NO")}));
    QCOMPARE(*m_commands->getPreference(text("useCountdown")), text("NO"));
    QVERIFY(!m_commands->setPreference(text("useCountdown"), {text("maybe")}));
    QVERIFY(!m_commands->setPreference(text("nonsense"), {text("1")}));
    QVERIFY(!m_commands->getPreference(text("reminderQueue")));
    QCOMPARE(m_changes, 1);
  }

  void thePasswordIsNotListed() {
    QVERIFY(m_commands->setPreference(text("passwordAD"), {text("secret")}));
    for (const auto& [key, value] : m_commands->preferences())
      QVERIFY(!value.contains(text("secret")));
  }

  void aPasswordThatCannotBeReadNowSaysSo() {
    QVERIFY(m_commands->setPreference(text("passwordAD"), {text("secret")}));
    const auto entry = [this] {
      for (const auto& [key, value] : m_commands->preferences()) {
        if (key == u"passwordAD")
          return value;
      }
      return QString();
    };
    QCOMPARE(entry(), text("(set)"));
    PreferencesStore& preferences = m_store->preferences();
    preferences.keepElsewhere(text("passwordAD"));
    preferences.setValue(text("passwordAD"), Value()); // as after a start
    QVERIFY(preferences.isUnread(text("passwordAD")));
    QCOMPARE(entry(), text("(set)"));
    QCOMPARE(m_commands->getPreference(text("passwordAD")).error().kind, Error::Kind::Unavailable);
  }

  void thePortCanBeEmptiedAgain() {
    QVERIFY(m_commands->setPreference(text("serverPortAD"), {text("25")}));
    QCOMPARE(*m_commands->getPreference(text("serverPortAD")), text("25"));
    QVERIFY(m_commands->setPreference(text("serverPortAD"), {QString()}));
    QCOMPARE(*m_commands->getPreference(text("serverPortAD")), QString());
  }

  void removingAndClearing() {
    const QString first = *m_commands->add(text("a"), in("1 Hour"));
    QVERIFY(m_commands->add(text("b"), in("2 Hours")).ok());
    QCOMPARE(*m_commands->remove(first), first);
    QVERIFY(!m_commands->remove(first));
    QVERIFY(m_commands->clear());
    QVERIFY(m_store->queue().isEmpty());
  }
};

QTEST_GUILESS_MAIN(CommandServiceTest)
#include "command_service_test.moc"
