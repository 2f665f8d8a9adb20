// What data dictionaries are read, what of them, and which are refused.
#include "dictionary_vocabulary.h"
#include "store/archive/keyed_value.h"
#include "store/archive/text_archive.h"
#include "store/documents/document_tasks.h"
#include "support/log_lines.h"

#include <QTest>

using namespace tockwise;

namespace {

using Builder = DocumentBuilder;

} // namespace

class DataDictionaryReadingTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void datesOfTheOlderKindBecomePlainDatesOfTheSameInstant() {
    Builder builder = documentOf(2);
    const auto calendarDate =
        builder.archive.record({{text("NS.time"), 700000000.125},
                                {text("NS.timezone"), builder.archive.text("Europe/Berlin")},
                                {text("NS.format"), builder.archive.text("%Y-%m-%d")}},
                               {text("NSCalendarDate"), text("NSDate")});
    builder.set("reminderQueue", 0, calendarDate);
    builder.set("reminderDateTimeCreated", 1, calendarDate);
    ReminderQueue queue;
    setDataWithDataDictionary(queue, toReplace(builder.finish()));
    QCOMPARE(queue->reminderQueue.values().at(0).seconds, 700000000.125);
    QCOMPARE(queue->reminderDateTimeCreated.values().at(1).seconds, 700000000.125);
    QCOMPARE(queue.count(), 2);
  }

  void surplusElementsAreIgnored() {
    Builder builder = documentOf(2);
    builder.add("reminderUUID", builder.text(text("more")));
    builder.add("reminderTasks", builder.text(text("foreign")));
    ReminderQueue queue;
    const DataDictionary dictionary = toReplace(builder.finish());
    QCOMPARE(dictionary.foreignElements, 0);
    setDataWithDataDictionary(queue, dictionary);
    queue.forEachColumn([](const auto& column) { QCOMPARE(column.size(), 2); });
  }

  void anArrayShorterThanTheFireDatesIsDamage_data() {
    QTest::addColumn<QString>("key");
    for (const QString& key : dataDictionaryKeys()) {
      if (key != u"reminderQueue")
        QTest::newRow(qPrintable(key)) << key;
    }
  }
  void anArrayShorterThanTheFireDatesIsDamage() {
    QFETCH(QString, key);
    Builder builder = documentOf(3);
    builder.array(key.toLatin1().constData()).pop_back();
    const auto dictionary = unarchivedDataDictionary(builder.finish(), kPads);
    QVERIFY(!dictionary.ok());
    QCOMPARE(dictionary.error().kind, Error::Kind::Damaged);
    QCOMPARE(dictionary.error().message,
             QStringLiteral("its %1 reaches 2 of 3 reminders").arg(key));
  }

  void aMissingArrayIsDamage_data() {
    QTest::addColumn<QString>("key");
    for (const QString& key : dataDictionaryKeys())
      QTest::newRow(qPrintable(key)) << key;
  }
  void aMissingArrayIsDamage() {
    QFETCH(QString, key);
    for (const int reminders : {0, 2}) {
      Builder builder = documentOf(reminders);
      builder.leaveOut(key.toLatin1().constData());
      const QByteArray archive = builder.finish();
      for (const auto use : {DictionaryUse::Replace, DictionaryUse::Merge}) {
        const auto dictionary = unarchivedDataDictionary(archive, kPads, use);
        QVERIFY(!dictionary.ok());
        QCOMPARE(dictionary.error().kind, Error::Kind::Damaged);
        QCOMPARE(dictionary.error().message, QStringLiteral("it has no %1").arg(key));
      }
    }
  }

  void whatIsNoArrayIsDamage() {
    Builder builder = documentOf(1);
    builder.setArray("reminderTasks", builder.nil());
    const auto dictionary = unarchivedDataDictionary(builder.finish(), kPads);
    QCOMPARE(dictionary.error().message, text("its reminderTasks is no array"));
  }

  void whatIsNoDataDictionaryIsDamage_data() {
    QTest::addColumn<QByteArray>("archive");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("words") << QByteArray("Dear diary");
    QTest::newRow("an archived text") << archiveValue(text("reminderQueue"));
    QTest::newRow("an archived array") << archiveValue(Value::Array{1, 2});
    QTest::newRow("an empty dictionary") << archiveValue(Value::Dictionary());
    QTest::newRow("nil") << ArchiveBuilder().finish({0});
    const QByteArray whole = archivedDataDictionary(Builder::queue(2));
    QTest::newRow("half of one") << whole.left(whole.size() / 2);
  }
  void whatIsNoDataDictionaryIsDamage() {
    QFETCH(QByteArray, archive);
    const auto dictionary = unarchivedDataDictionary(archive, kPads);
    QVERIFY(!dictionary.ok());
    QCOMPARE(dictionary.error().kind, Error::Kind::Damaged);
    QVERIFY(!dictionary.error().message.contains(u'\n'));
  }

  void furtherKeysAreIgnored() {
    ReminderQueue queue = Builder::queue(1);
    auto value = unarchiveValue(archivedDataDictionary(queue));
    Value::Dictionary pairs = *value->get<Value::Dictionary>();
    pairs.insert(pairs.begin(), {text("version"), Value(2)});
    setDataWithDataDictionary(queue, toReplace(archiveValue(pairs)));
    QVERIFY(sameColumns(queue.columns(), Builder::queue(1).columns()));
  }

  void elementsOfOlderLayoutsBecomeBlank() {
    Builder builder = documentOf(2);
    builder.set("reminderIntervals", 0, builder.text(QString()));
    builder.set("reminderOffsets", 0, builder.text(QString()));
    builder.set("reminderTasks", 0, builder.text(QString()));
    builder.set("reminderExtras", 0, builder.nil());
    const DataDictionary dictionary = toReplace(builder.finish());
    QCOMPARE(dictionary.foreignElements, 0);
    QCOMPARE(dictionary.columns.reminderIntervals.values().at(0), kBlankInterval);
    QCOMPARE(dictionary.columns.reminderOffsets.values().at(0), kBlankOffset);
    QVERIFY(dictionary.columns.reminderTasks.values().at(0) == Task());
    QVERIFY(dictionary.columns.reminderExtras.values().at(0) == kBlankExtra);
  }

  void elementsOfAForeignKindReadAsTheirPadValue() {
    Builder builder = documentOf(2);
    builder.set("reminderDescriptions", 0, builder.nil());
    builder.set("reminderSendEmail", 0, builder.text(text("yes")));
    builder.set("reminderUUID", 1, builder.archive.add(qint64(7)));
    builder.set("reminderDateTimeCreated", 1, {0});
    builder.set("reminderIntervals", 1, builder.numbers({1, 2, 3}));
    LogLines log;
    const DataDictionary dictionary = toReplace(builder.finish());
    QCOMPARE(dictionary.foreignElements, 5);
    QCOMPARE(log.take().first(),
             text("reminderDateTimeCreated: 1 elements are of a foreign kind, the first is 1"));
    QCOMPARE(dictionary.columns.reminderDescriptions.values().at(0), QString());
    QVERIFY(dictionary.columns.reminderSendEmail.values().at(0));
    QCOMPARE(dictionary.columns.reminderUUID.values().at(1).size(), 36);
    QCOMPARE(dictionary.columns.reminderDateTimeCreated.values().at(1).seconds,
             Builder::kNow.seconds);
    QCOMPARE(dictionary.columns.reminderIntervals.values().at(1), kBlankInterval);
  }

  void mutableAndWrappedValuesReadLikeTheOthers() {
    Builder builder = documentOf(1);
    ArchiveBuilder& archive = builder.archive;
    const auto number = [&](const char* field, Value value) {
      return archive.record({{text(field), std::move(value)}}, {text("NSNumber"), text("NSValue")});
    };
    const auto mutableText = [&](const char* utf8) {
      return archive.record({{text("NS.string"), text(utf8)}},
                            {text("NSMutableString"), text("NSString")});
    };
    builder.set("reminderDescriptions", 0, mutableText("Tea"));
    builder.set("reminderRTFs", 0,
                archive.record({{text("NS.data"), QByteArray("rich")}},
                               {text("NSMutableData"), text("NSData")}));
    builder.set("reminderRecent", 0, number("NS.intval", qint64(4)));
    builder.set("reminderSendEmail", 0, number("NS.boolval", true));
    builder.set("reminderSendSMS", 0, archive.add(qint64(1)));
    builder.set("reminderQueue", 0, archive.add(Date{42.5}));
    const auto keys = Value::Array{mutableText("type"), mutableText("path")};
    const auto values = Value::Array{archive.add(3.0), mutableText("/bin/true")};
    builder.set("reminderTasks", 0,
                archive.record({{text("NS.keys"), keys}, {text("NS.objects"), values}},
                               {text("NSMutableDictionary"), text("NSDictionary")}));
    builder.set(
        "reminderOffsets", 0,
        archive.record({{text("NS.objects"), Value::Array{archive.add(qint64(1)), archive.add(true),
                                                          archive.add(qint64(3))}}},
                       {text("NSMutableArray"), text("NSArray")}));
    ReminderQueue queue;
    const DataDictionary dictionary = toReplace(builder.finish());
    QCOMPARE(dictionary.foreignElements, 0);
    setDataWithDataDictionary(queue, dictionary);
    const Reminder read = *queue.reminder(0);
    QCOMPARE(read.reminderDescriptions, text("Tea"));
    QCOMPARE(read.reminderRTFs, QByteArray("rich"));
    QCOMPARE(read.reminderRecent, 4);
    QVERIFY(read.reminderSendEmail && read.reminderSendSMS);
    QCOMPARE(read.reminderQueue.seconds, 42.5);
    QVERIFY(read.reminderTasks == (Task{false, 3, text("/bin/true")}));
    QCOMPARE(read.reminderOffsets, (Offset{1, 1, 3}));
  }

  void theRecordedDocumentsAreRead() {
    // As another program writes them, and as version 0.1.0 wrote the same.
    const DataDictionary other = toReplace(recorded("other-program.tockwise"));
    const DataDictionary ours = toReplace(recorded("version-0.1.0.tockwise"));
    QCOMPARE(other.foreignElements + ours.foreignElements, 0);
    QVERIFY(sameColumns(other.columns, ours.columns));
    QCOMPARE(ours.columns.reminderDescriptions.values(),
             (std::vector<QString>{text("Water the plants"),
                                   text("Tee um fünf ☕️\nzweite Zeile"), text("Dentist")}));
    QCOMPARE(ours.columns.reminderQueue.values().at(0).seconds, 946684800.125);
    QCOMPARE(ours.columns.reminderDateTimeFired.values().at(1).seconds, 700500000.75);
    QCOMPARE(ours.columns.reminderDateTimeFired.values().at(0).seconds, kDistantPast.seconds);
    QVERIFY(unarchiveTextStorage(ours.columns.reminderRTFs.values().at(1)).ok());
    QVERIFY(ours.columns.reminderTasks.values().at(1) ==
            (Task{false, Task::Script, text("/home/me/backup.sh")}));
    QCOMPARE(ours.columns.reminderIntervals.values().at(2), kBlankInterval);
    QCOMPARE(ours.columns.importedUIDs.values().at(2), text("A-B-C-D"));
  }

  void whatWasRecordedIsWrittenTheSame() {
    ReminderQueue queue;
    setDataWithDataDictionary(queue, toReplace(recorded("version-0.1.0.tockwise")));
    QCOMPARE(archivedDataDictionary(queue), recorded("version-0.1.0.tockwise"));
  }

  void oneObjectMayStandForManyElements() {
    Builder builder;
    builder.addReminder(text("A"));
    for (const QString& key : dataDictionaryKeys()) {
      auto& array = builder.array(key.toLatin1().constData());
      array.push_back(array.front());
    }
    ReminderQueue queue;
    setDataWithDataDictionary(queue, toReplace(builder.finish()));
    QCOMPARE(queue.count(), 2);
    QVERIFY(*queue.reminder(0) == *queue.reminder(1));
  }

  void theTasksOfADocumentAreThoseThatAreNotBlank() {
    DataDictionary dictionary = toReplace(archivedDataDictionary(Builder::queue(4)));
    const auto tasks = tasksOf(dictionary);
    QCOMPARE(tasks.size(), 2U);
    QCOMPARE(tasks[1].row, 2);
    QCOMPARE(tasks[1].reminder, text("Text № 3"));
    QCOMPARE(tasks[1].fires.seconds, Builder::reminder(3).reminderQueue.seconds);
    QVERIFY(tasks[1].task == (Task{false, Task::Script, text("/bin/3")}));
    blankTask(dictionary, 0);
    blankTask(dictionary, 99);
    blankTask(dictionary, -1);
    QCOMPARE(tasksOf(dictionary).size(), 1U);
    blankTask(dictionary, 2);
    QVERIFY(tasksOf(dictionary).empty());
    QCOMPARE(dictionary.columns.reminderTasks.size(), 4);
  }

  void aTaskWithoutAPathIsATaskAllTheSame() {
    Builder builder = documentOf(1);
    builder.set(
        "reminderTasks", 0,
        builder.archive.dictionary({{builder.archive.text("type"), builder.archive.add(qint64(99))},
                                    {builder.archive.text("path"), builder.text(QString())}}));
    QCOMPARE(tasksOf(toReplace(builder.finish())).size(), 1U);
  }
};

QTEST_GUILESS_MAIN(DataDictionaryReadingTest)
#include "data_dictionary_reading_test.moc"
