#include "store/reminder_store.h"
#include "support/test_environment.h"
#include "support/user_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <set>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

Value::Dictionary threeReminders() {
  const Date date{800000000.25};
  return {{text("reminderQueue"), Value::Array(3, Value(date))},
          {text("reminderDescriptions"),
           Value::Array{Value(text("a")), Value(text("b")), Value(text("c"))}}};
}

} // namespace

class ReminderStoreTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date::fromUnixSeconds(1741079742)};

  std::unique_ptr<ReminderStore> open() { return openUserStore(m_clock); }

  void writeFile(const Value::Dictionary& dictionary) {
    plist::Writer writer;
    const QByteArray bytes = writer.finish(writer.value(Value(dictionary)));
    QDir().mkpath(QFileInfo(PreferencesStore::Paths::ofUser().file).path());
    QFile file(PreferencesStore::Paths::ofUser().file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

 private Q_SLOTS:
  void init() { m_environment = std::make_unique<TestEnvironment>(); }

  void aFirstStartGivesAnEmptyQueueAndTheDefaults() {
    const auto store = open();
    QVERIFY(store->queue().isEmpty());
    QCOMPARE(store->preferences().integer(text("sortType")), 1);
    QCOMPARE(store->preferences().stringList(text("quickRemindMenuArray")).size(), 9);
    QCOMPARE(store->preferences().stringList(text("quickRemindMenuArray")).last(), text("2 Days"));
    QVERIFY(store->preferences().boolean(text("showRichText")));
    QVERIFY(!store->preferences().isSet(text("selectedSoundFilename")));
    QCOMPARE(store->preferences().string(text("dataVersion")), text(TOCKWISE_VERSION));
  }

  void missingIdentifiersAreMadeOnceAndKept() {
    writeFile(threeReminders());
    std::vector<QString> identifiers;
    {
      const auto store = open();
      identifiers = store->queue()->reminderUUID.values();
      QCOMPARE(std::set<QString>(identifiers.begin(), identifiers.end()).size(), size_t(3));
      store->queue().forEachColumn([](const auto& column) { QCOMPARE(column.size(), 3); });
      QCOMPARE(store->loadReport().foreignElements, 0);
    }
    QCOMPARE(open()->queue()->reminderUUID.values(), identifiers);
  }

  void doubledIdentifiersAreRenewed() {
    auto file = threeReminders();
    file.emplace_back(text("reminderUUID"),
                      Value::Array{Value(text("A")), Value(text("A")), Value(QString())});
    writeFile(file);
    std::vector<QString> identifiers;
    {
      const auto store = open();
      identifiers = store->queue()->reminderUUID.values();
      QCOMPARE(identifiers.front(), text("A"));
      QCOMPARE(std::set<QString>(identifiers.begin(), identifiers.end()).size(), size_t(3));
      QVERIFY(!identifiers.back().isEmpty());
    }
    QCOMPARE(open()->queue()->reminderUUID.values(), identifiers);
  }

  void whatAnotherProgramLeavesIsMendedAsAtTheStart() {
    const auto store = open();
    int notices = 0;
    store->preferences().onNotice = [&](const StoreNotice& notice) {
      ++notices;
      QCOMPARE(notice.foreignElements, 1);
      QVERIFY(QFileInfo::exists(notice.originalKeptAs));
    };
    auto file = threeReminders();
    file.emplace_back(text("reminderOffsets"), Value(text("x")));
    writeFile(file);
    store->saveDefaults();
    QCOMPARE(notices, 1);
    QVERIFY(store->preferences().isSaved());
    QFile written(PreferencesStore::Paths::ofUser().file);
    QVERIFY(written.open(QIODevice::ReadOnly));
    const auto reader = plist::Reader::open(written.readAll());
    QVERIFY(reader.ok());
    const auto onDisk = reader->value(*reader->find(reader->root(), u"reminderUUID"));
    QCOMPARE(*onDisk.strings(), QStringList(store->queue()->reminderUUID.values().begin(),
                                            store->queue()->reminderUUID.values().end()));
  }

  void datesKeepTheirFractions() {
    writeFile(threeReminders());
    QCOMPARE(open()->queue()->reminderQueue.values().front(), Date{800000000.25});
  }

  void valuesOfOlderLayoutsBecomeBlankOnes() {
    auto file = threeReminders();
    const Value::Dictionary nil{{text("nil"), Value(text("nil"))}};
    file.emplace_back(text("reminderIntervals"), Value::Array(3, Value(QString())));
    file.emplace_back(text("reminderExtras"), Value::Array(3, Value(nil)));
    file.emplace_back(text("reminderTasks"), Value::Array(3, Value(QString())));
    writeFile(file);
    const auto store = open();
    QCOMPARE(store->loadReport().foreignElements, 0);
    QCOMPARE(store->queue()->reminderIntervals.values(), std::vector<Interval>(3, kBlankInterval));
    QCOMPARE(store->queue()->reminderExtras.values(), std::vector<Extra>(3, kBlankExtra));
    QCOMPARE(store->queue()->reminderTasks.values(), std::vector<Task>(3, Task{}));
  }

  void foreignElementsBecomePadsAndTheOriginalIsKept() {
    auto file = threeReminders();
    file.emplace_back(
        text("reminderIntervals"),
        Value::Array{Value(7), Value(Value::Array{Value(1)}), Value(Value::Array(4, Value(1)))});
    file.emplace_back(
        text("reminderExtras"),
        Value::Array{Value(Value::Dictionary{{text("days"), Value(1)}, {text("times"), Value(2)}}),
                     Value(text("x")), Value(Value::Dictionary{})});
    file.emplace_back(text("reminderUUID"),
                      Value::Array{Value(1), Value(text("U2")), Value(text("U3"))});
    file.emplace_back(text("reminderRecent"),
                      Value::Array{Value(true), Value(4), Value(text("x"))});
    file.emplace_back(text("recentReminders"), Value::Array{Value(text("x"))});
    writeFile(file);
    const auto store = open();
    QCOMPARE(store->loadReport().foreignElements, 8);
    QCOMPARE(store->queue()->reminderIntervals.values()[2], (Interval{1, 1, 1, 1}));
    QCOMPARE(store->queue()->reminderIntervals.values()[0], kBlankInterval);
    QCOMPARE(store->queue()->reminderExtras.values(), std::vector<Extra>(3, kBlankExtra));
    QCOMPARE(store->queue()->reminderUUID.values()[0].size(), 36);
    QCOMPARE(store->queue()->reminderUUID.values()[1], text("U2"));
    QCOMPARE(store->queue()->reminderRecent.values(), (std::vector<qint64>{1, 4, 0}));
    QFile original(store->loadReport().originalKeptAs);
    QVERIFY(original.open(QIODevice::ReadOnly));
    QVERIFY(plist::Reader::open(original.readAll()).ok());
  }

  void aForeignColumnIsEmptyAndCounted() {
    auto file = threeReminders();
    file.emplace_back(text("reminderOffsets"), Value(text("x")));
    writeFile(file);
    const auto store = open();
    QCOMPARE(store->loadReport().foreignElements, 1);
    QCOMPARE(store->queue()->reminderOffsets.values(), std::vector<Offset>(3, kBlankOffset));
  }

  void theOlderDistantPastIsOurs() {
    auto file = threeReminders();
    file.emplace_back(text("reminderDateTimeFired"), Value::Array(3, Value(Date{-63114076800.0})));
    writeFile(file);
    QCOMPARE(open()->queue()->reminderDateTimeFired.values(), std::vector<Date>(3, kDistantPast));
  }

  void mailColumnsArePaddedWithThePreferences() {
    auto file = threeReminders();
    file.emplace_back(text("sendEmail"), Value(true));
    writeFile(file);
    const auto store = open();
    QCOMPARE(store->queue()->reminderSendEmail.values(), std::vector<Flag>(3, true));
    QCOMPARE(store->queue()->reminderSendSMS.values(), std::vector<Flag>(3, false));
  }

  // A file as version 0.1.0 wrote it: what the format promises holds for every later version.
  void aRecordedStoreIsRead() {
    QDir().mkpath(QFileInfo(PreferencesStore::Paths::ofUser().file).path());
    QVERIFY(QFile::copy(text(TOCKWISE_TEST_DATA "/store/version-0.1.0.plist"),
                        PreferencesStore::Paths::ofUser().file));
    const auto store = open();
    QCOMPARE(store->loadReport().foreignElements, 0);
    QCOMPARE(store->queue().count(), 2);
    const Reminder first = *store->queue().reminder(0);
    QCOMPARE(first.reminderUUID, text("0D3A4B5C-6D7E-4F80-9A1B-2C3D4E5F6071"));
    QCOMPARE(first.reminderDescriptions, text("Water the plants 🌱"));
    QCOMPARE(first.reminderQueue, Date{793200000.5});
    QCOMPARE(first.reminderIntervals, (Interval{0, 7, 0, 0}));
    QCOMPARE(first.reminderRecent, 3);
    QCOMPARE(first.reminderTasks, (Task{false, 0, text("example.org")}));
    QCOMPARE(first.reminderExtras,
             (Extra{{false, true, true, true, true, true, false}, {9, 0, 17, 30}}));
    QCOMPARE(first.reminderOffsets, (Offset{1, 0, 30}));
    QVERIFY(first.reminderSendEmail);
    QVERIFY(!isDistantPast(first.reminderDateTimeFired));
    QVERIFY(isDistantPast(store->queue().reminder(1)->reminderDateTimeFired));
    QCOMPARE(store->recentReminders().entries().size(), size_t(1));
    QCOMPARE(store->preferences().integer(text("clockoption")), 3);
  }

  void settingsOfOtherReleasesAreKept() {
    auto file = threeReminders();
    file.emplace_back(text("aKeyOfTomorrow"), Value(Value::Array{Value(1), Value(text("x"))}));
    writeFile(file);
    {
      const auto store = open();
      store->preferences().setValue(text("email"), text("x"));
      store->preferences().synchronize();
    }
    QCOMPARE(open()->preferences().value(text("aKeyOfTomorrow")),
             Value(Value::Array{Value(1), Value(text("x"))}));
  }

  void everythingSurvivesARestart() {
    Reminder all;
    all.reminderQueue = Date{812345678.123456};
    all.reminderDescriptions = text("Tea ☕\nsecond line");
    all.reminderRTFs = QByteArray("\0\1\2", 3);
    all.reminderIntervals = {1, 2, 3, 4};
    all.reminderTasks = {false, 4, text("/tmp/a b.sh")};
    all.reminderExtras = {{true, false, true, false, true, false, true}, {9, 5, 17, 30}};
    all.reminderOffsets = {1, 0, 30};
    all.importedUIDs = text("event");
    all.reminderSendSMS = true;
    Reminder before;
    {
      const auto store = open();
      store->appendReminder(all, ReminderStore::RecentEntry::Add);
      before = *store->queue().reminder(0);
    }
    const auto store = open();
    QCOMPARE(*store->queue().reminder(0), before);
    QCOMPARE(before.reminderTypes, text("regular"));
    QCOMPARE(store->recentReminders().entries().size(), size_t(1));
  }

  void theFirstDaysCopyHoldsReminders() {
    const auto store = open();
    store->preferences().setValue(text("email"), text("x"));
    store->saveDefaults();
    store->appendReminder(Reminder(), ReminderStore::RecentEntry::Omit);
    store->appendReminder(Reminder(), ReminderStore::RecentEntry::Omit);
    const QDir backups(PreferencesStore::Paths::ofUser().backups);
    const QStringList copies = backups.entryList(QDir::Files);
    QVERIFY(!copies.isEmpty());
    QFile copy(backups.filePath(copies.back()));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    const auto reader = plist::Reader::open(copy.readAll());
    QVERIFY(reader.ok());
    QCOMPARE(reader->count(*reader->find(reader->root(), u"reminderUUID")), 1);
  }

  void anIdleSaveWritesNothing() {
    const auto store = open();
    store->appendReminder(Reminder(), ReminderStore::RecentEntry::Omit);
    const qint64 written = store->preferences().bytesWritten();
    store->saveDefaults();
    store->saveDefaults();
    QCOMPARE(store->preferences().bytesWritten(), written);
  }

  void editingAndRemovingFindTheReminderByItsIdentity() {
    const auto store = open();
    Reminder reminder;
    reminder.reminderDescriptions = text("a");
    const QString first = store->appendReminder(reminder, ReminderStore::RecentEntry::Omit);
    reminder.reminderDescriptions = text("b");
    const QString second = store->appendReminder(reminder, ReminderStore::RecentEntry::Omit);
    QVERIFY(store->queue().permute({1, 0}));
    m_clock.advance(5);
    Reminder edited = *store->queue().reminder(1);
    edited.reminderDescriptions = text("c");
    QVERIFY(store->editReminder(first, edited));
    QCOMPARE(store->queue()->reminderDescriptions.values(),
             (std::vector<QString>{text("b"), text("c")}));
    QCOMPARE(store->queue()->reminderDateTimeModified.values()[1], m_clock.now());
    QVERIFY(store->removeReminder(second));
    QCOMPARE(store->queue()->reminderUUID.values(), (std::vector<QString>{first}));
    QCOMPARE(store->removeReminder(second).error().kind, Error::Kind::NotFound);
    QCOMPARE(store->editReminder(second, edited).error().kind, Error::Kind::NotFound);
  }
};

QTEST_GUILESS_MAIN(ReminderStoreTest)
#include "reminder_store_test.moc"
