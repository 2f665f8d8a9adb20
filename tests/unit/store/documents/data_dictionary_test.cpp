// The data dictionary: export, replace, merge.
#include "store/archive/keyed_value.h"
#include "store/archive/text_archive.h"
#include "store/documents/data_dictionary.h"
#include "store/documents/document_tasks.h"
#include "support/document_builder.h"
#include "support/log_lines.h"

#include <QFile>
#include <QTest>

using namespace tockwise;

namespace {

using Builder = DocumentBuilder;

constexpr ReminderQueue::Pads kPads{Builder::kNow, true, false};
const QString kHuh = QStringLiteral("Huh? Don't have an NSDate or NSCalendarDate?");
const QString kMergeEntry = QStringLiteral("RootViewController: mergeDataWithDataDictionary");

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

DataDictionary readFor(DictionaryUse use, const QByteArray& archive) {
  auto dictionary = unarchivedDataDictionary(archive, kPads, use);
  if (!dictionary)
    qFatal("%s", qPrintable(dictionary.error().message));
  return std::move(dictionary).value();
}

DataDictionary toReplace(const QByteArray& archive) {
  return readFor(DictionaryUse::Replace, archive);
}

DataDictionary toMerge(const QByteArray& archive) {
  return readFor(DictionaryUse::Merge, archive);
}

bool sameColumns(const Columns& one, const Columns& other) {
  bool same = true;
  std::apply(
      [&](const auto&... field) {
        ((same = same && (one.*(field.first)).values() == (other.*(field.first)).values()), ...);
      },
      kFields);
  return same;
}

template <typename T> std::vector<T> valuesOf(const Column<T>& column) {
  return column.values();
}

QByteArray recorded(const char* name) {
  QFile file(QStringLiteral(TOCKWISE_TEST_DATA "/documents/%1").arg(text(name)));
  if (!file.open(QIODevice::ReadOnly))
    qFatal("%s", qPrintable(file.errorString()));
  return file.readAll();
}

// A document of that many reminders, named A, B, C and so on.
Builder documentOf(int reminders) {
  Builder builder;
  for (int i = 0; i < reminders; ++i)
    builder.addReminder(QString(QChar(u'A' + i)));
  return builder;
}

} // namespace

class DataDictionaryTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void theKeysStandInTheirOrder() {
    QCOMPARE(dataDictionaryKeys(),
             text("importedUIDs reminderDateTimeCreated reminderDateTimeFired "
                  "reminderDateTimeModified reminderRecent reminderUUID reminderQueue "
                  "reminderTypes reminderIntervals reminderDescriptions reminderRTFs "
                  "reminderSendEmail reminderSendSMS reminderTasks reminderExtras reminderOffsets")
                 .split(u' '));
  }

  void exportWritesTheSixteenArraysInTheirOrder() {
    const auto value = unarchiveValue(archivedDataDictionary(Builder::queue(3)));
    QVERIFY(value.ok());
    const auto* pairs = value->get<Value::Dictionary>();
    QVERIFY(pairs);
    QStringList keys;
    for (const auto& [key, array] : *pairs) {
      keys.append(key);
      QCOMPARE(array.get<Value::Array>()->size(), 3U);
    }
    QCOMPARE(keys, dataDictionaryKeys());
  }

  void exportWritesElementsAsTheQueueStoresThem() {
    const auto value = unarchiveValue(archivedDataDictionary(Builder::queue(2)));
    const auto element = [&](const char* key, size_t row) {
      return value->find(text(key))->get<Value::Array>()->at(row);
    };
    const Reminder first = Builder::reminder(1);
    QCOMPARE(element("reminderQueue", 0).get<Date>()->seconds, first.reminderQueue.seconds);
    QVERIFY(element("reminderDateTimeFired", 1) == Value(kDistantPast));
    QVERIFY(element("reminderRecent", 1) == Value(2));
    QVERIFY(element("reminderSendEmail", 0) == Value(true));
    QVERIFY(element("reminderRTFs", 1) == Value(QByteArray()));
    QVERIFY(element("reminderIntervals", 0) == Value(Value::Array{0, 1, 0, 30}));
    QVERIFY(element("reminderTasks", 0) ==
            Value(Value::Dictionary{{text("type"), 4}, {text("path"), text("/bin/1")}}));
    QVERIFY(element("reminderTasks", 1) == Value(Value::Dictionary{{text("nil"), text("nil")}}));
    const Value extra = element("reminderExtras", 0);
    QVERIFY(*extra.find(u"days") == Value(Value::Array{true, false, true, true, true, true, true}));
    QVERIFY(*extra.find(u"times") == Value(Value::Array{8, 1, 18, 0}));
  }

  void aReminderThatNeverFiredHasTheCountNo() {
    ReminderQueue queue;
    queue.append(Reminder());
    const auto value = unarchiveValue(archivedDataDictionary(queue));
    QVERIFY(value->find(u"reminderRecent")->get<Value::Array>()->at(0) == Value(false));
  }

  void savingThenOpeningGivesTheSameQueue() {
    const ReminderQueue saved = Builder::queue(3);
    ReminderQueue opened = Builder::queue(5, 10);
    LogLines log;
    setDataWithDataDictionary(opened, toReplace(archivedDataDictionary(saved)));
    QVERIFY(sameColumns(opened.columns(), saved.columns()));
    QCOMPARE(log.take(), QStringList(text("setDataWithDataDictionary - 3 items")));
  }

  void anEmptyQueueSavesAsSixteenEmptyArraysAndEmptiesTheQueueThatOpensIt() {
    const QByteArray archive = archivedDataDictionary(ReminderQueue());
    const auto value = unarchiveValue(archive);
    QCOMPARE(value->get<Value::Dictionary>()->size(), 16U);
    for (const auto& pair : *value->get<Value::Dictionary>())
      QVERIFY(pair.second.get<Value::Array>()->empty());
    ReminderQueue queue = Builder::queue(2);
    LogLines log;
    setDataWithDataDictionary(queue, toReplace(archive));
    queue.forEachColumn([](const auto& column) { QVERIFY(column.isEmpty()); });
    QCOMPARE(log.take(), QStringList(text("setDataWithDataDictionary - 0 items")));
  }

  void replacingChangesTheRevision() {
    ReminderQueue queue = Builder::queue(1);
    const quint64 before = queue.revision();
    setDataWithDataDictionary(queue, toReplace(archivedDataDictionary(Builder::queue(1, 2))));
    QVERIFY(queue.revision() != before);
  }

  void textsThatAreNoUnicodeAreWrittenWithoutTheHalfPair() {
    ReminderQueue queue;
    Reminder reminder = Builder::reminder(1);
    reminder.reminderDescriptions = text("a") + QChar(0xD800) + text("b😀") + QChar(u'\0');
    queue.append(reminder);
    setDataWithDataDictionary(queue, toReplace(archivedDataDictionary(queue)));
    QCOMPARE(queue->reminderDescriptions.values().at(0), text("a�b😀") + QChar(u'\0'));
  }

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

  void aForeignFireDateIsDroppedAloneWhenReplacing() {
    Builder builder = documentOf(3);
    builder.set("reminderQueue", 0, builder.text(text("tomorrow")));
    builder.set("reminderQueue", 2, builder.archive.add(std::numeric_limits<double>::quiet_NaN()));
    ReminderQueue queue = Builder::queue(1);
    LogLines log;
    const DataDictionary dictionary = toReplace(builder.finish());
    QCOMPARE(dictionary.rowsWithoutFireDate, (std::vector<qsizetype>{0, 2}));
    QCOMPARE(dictionary.foreignElements, 0);
    QCOMPARE(log.take(), QStringList());
    setDataWithDataDictionary(queue, dictionary);
    QCOMPARE(log.take(), QStringList()
                             << kHuh << kHuh << text("setDataWithDataDictionary - 1 items"));
    QCOMPARE(queue.count(), 1);
    QCOMPARE(queue->reminderDescriptions.size(), 3);
    QCOMPARE(queue->importedUIDs.size(), 3);
  }

  void aForeignFireDateIsDroppedAloneWhenMerging() {
    Builder builder = documentOf(3);
    builder.set("reminderQueue", 1, builder.nil());
    ReminderQueue queue = Builder::queue(1);
    LogLines log;
    const auto counts = mergeDataWithDataDictionary(queue, toMerge(builder.finish()));
    QVERIFY(counts.ok());
    QCOMPARE(*counts, (MergeCounts{3, 0}));
    QCOMPARE(log.take(), QStringList() << kMergeEntry << kHuh
                                       << text("nbrItemsMerged = 3, nbrItemsExisted = 0"));
    QCOMPARE(queue.count(), 3);
    QCOMPARE(queue->reminderUUID.size(), 4);
    QCOMPARE(queue->importedUIDs.size(), 4);
  }

  void theFireDateOfAReminderThatExistsIsNotLookedAt() {
    Builder builder = documentOf(1);
    builder.set("reminderQueue", 0, builder.nil());
    builder.set("reminderUUID", 0, builder.text(Builder::reminder(1).reminderUUID));
    ReminderQueue queue = Builder::queue(1);
    LogLines log;
    QVERIFY(mergeDataWithDataDictionary(queue, toMerge(builder.finish())).ok());
    QCOMPARE(log.take(), QStringList()
                             << kMergeEntry << text("nbrItemsMerged = 0, nbrItemsExisted = 1"));
  }

  void mergingADictionaryIntoItselfMergesNothing() {
    ReminderQueue queue = Builder::queue(3);
    const quint64 revision = queue.revision();
    LogLines log;
    const auto counts = mergeDataWithDataDictionary(queue, toMerge(archivedDataDictionary(queue)));
    QVERIFY(counts.ok());
    QCOMPARE(*counts, (MergeCounts{0, 3}));
    QCOMPARE(log.take(), QStringList()
                             << kMergeEntry << text("nbrItemsMerged = 0, nbrItemsExisted = 3"));
    QCOMPARE(queue.revision(), revision);
  }

  void mergingAppendsWhatIsNewAtTheEnd() {
    ReminderQueue queue = Builder::queue(2);
    const auto counts =
        mergeDataWithDataDictionary(queue, toMerge(archivedDataDictionary(Builder::queue(3, 2))));
    QVERIFY(counts.ok());
    QCOMPARE(*counts, (MergeCounts{2, 1}));
    QVERIFY(sameColumns(queue.columns(), Builder::queue(4).columns()));
  }

  void mergingLeavesAKnownReminderAsItIs() {
    ReminderQueue queue = Builder::queue(1);
    Builder builder = documentOf(1);
    builder.set("reminderUUID", 0, builder.text(Builder::reminder(1).reminderUUID));
    QVERIFY(mergeDataWithDataDictionary(queue, toMerge(builder.finish())).ok());
    QVERIFY(sameColumns(queue.columns(), Builder::queue(1).columns()));
  }

  void aDoubledIdentifierInTheDictionaryIsMergedOnce() {
    Builder builder = documentOf(3);
    builder.set("reminderUUID", 2, builder.text(text("A")));
    ReminderQueue queue;
    const auto counts = mergeDataWithDataDictionary(queue, toMerge(builder.finish()));
    QCOMPARE(*counts, (MergeCounts{2, 1}));
    QCOMPARE(valuesOf(queue->reminderDescriptions),
             (std::vector<QString>{text("text of A"), text("text of B")}));
  }

  void identifiersAreComparedWithTheirCase() {
    Builder builder = documentOf(1);
    builder.set("reminderUUID", 0, builder.text(text("a")));
    ReminderQueue queue;
    setDataWithDataDictionary(queue, toReplace(documentOf(1).finish()));
    QCOMPARE(*mergeDataWithDataDictionary(queue, toMerge(builder.finish())), (MergeCounts{1, 0}));
  }

  void mergingBringsTheCalendarIdentifiersToTheirLengthFirst() {
    ReminderQueue queue = Builder::queue(2);
    Columns columns = queue.columns();
    ReminderQueue::valuesOf(columns.importedUIDs).clear();
    queue.setColumns(columns);
    QVERIFY(mergeDataWithDataDictionary(queue, toMerge(documentOf(1).finish())).ok());
    QCOMPARE(valuesOf(queue->importedUIDs), (std::vector<QString>(3)));
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

  void surplusElementsAreIgnoredWhenMerging() {
    Builder builder = documentOf(2);
    builder.add("reminderQueue", builder.date(Builder::kNow));
    ReminderQueue queue;
    QCOMPARE(*mergeDataWithDataDictionary(queue, toMerge(builder.finish())), (MergeCounts{2, 0}));
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

  void anArrayThatDoesNotReachANewReminderIsDamageAndMergesNothing_data() {
    anArrayShorterThanTheFireDatesIsDamage_data();
    QTest::newRow("reminderQueue") << text("reminderQueue");
  }
  void anArrayThatDoesNotReachANewReminderIsDamageAndMergesNothing() {
    QFETCH(QString, key);
    if (key == u"reminderUUID")
      return; // it says how many there are
    Builder builder = documentOf(3);
    builder.array(key.toLatin1().constData()).pop_back();
    ReminderQueue queue = Builder::queue(1);
    const quint64 revision = queue.revision();
    const DataDictionary dictionary = toMerge(builder.finish());
    const auto counts = mergeDataWithDataDictionary(queue, dictionary);
    QVERIFY(!counts.ok());
    QCOMPARE(counts.error().kind, Error::Kind::Damaged);
    QCOMPARE(queue.revision(), revision);
  }

  void anArrayNeedNotReachAReminderThatExists() {
    ReminderQueue queue;
    setDataWithDataDictionary(queue, toReplace(documentOf(3).finish()));
    Builder builder = documentOf(3);
    builder.array("reminderQueue").pop_back();
    QCOMPARE(*mergeDataWithDataDictionary(queue, toMerge(builder.finish())), (MergeCounts{0, 3}));
  }

  void aDictionaryReadForMergingIsNoReplacementWhenItsArraysDiffer() {
    Builder builder = documentOf(3);
    builder.array("reminderTasks").pop_back();
    ReminderQueue queue = Builder::queue(1);
    const quint64 revision = queue.revision();
    setDataWithDataDictionary(queue, toMerge(builder.finish()));
    QCOMPARE(queue.revision(), revision);
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
    QCOMPARE(valuesOf(ours.columns.reminderDescriptions),
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

QTEST_GUILESS_MAIN(DataDictionaryTest)
#include "data_dictionary_test.moc"
