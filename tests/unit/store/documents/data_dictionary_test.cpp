// The data dictionary: export and replacing the queue.
#include "dictionary_vocabulary.h"
#include "store/archive/keyed_value.h"
#include "support/log_lines.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace tockwise;

namespace {

using Builder = DocumentBuilder;

const QString kHuh = QStringLiteral("Huh? Don't have an NSDate or NSCalendarDate?");

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

  void onAnotherThreadTheConversionsWaitForTheMainOne() {
    ReminderQueue queue = Builder::queue(1);
    std::atomic<int> steps = 0;
    std::thread other([&] {
      const QByteArray archive = archivedDataDictionary(queue);
      ++steps;
      setDataWithDataDictionary(queue, toReplace(archivedDataDictionary(Builder::queue(2))));
      ++steps;
      if (mergeDataWithDataDictionary(queue, toMerge(archivedDataDictionary(Builder::queue(3)))))
        ++steps;
    });
    QCOMPARE(steps.load(), 0); // nobody answers while we do not
    QTRY_COMPARE(steps.load(), 3);
    other.join();
    QVERIFY(sameColumns(queue.columns(), Builder::queue(3).columns()));
  }
};

QTEST_GUILESS_MAIN(DataDictionaryTest)
#include "data_dictionary_test.moc"
