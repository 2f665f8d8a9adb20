// Merging a data dictionary into the queue.
#include "dictionary_vocabulary.h"
#include "support/log_lines.h"

#include <QTest>

using namespace tockwise;

namespace {

using Builder = DocumentBuilder;

const QString kHuh = QStringLiteral("Huh? Don't have an NSDate or NSCalendarDate?");
const QString kMergeEntry = QStringLiteral("RootViewController: mergeDataWithDataDictionary");

} // namespace

class DataDictionaryMergeTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
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
    QCOMPARE(queue->reminderDescriptions.values(),
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
    QCOMPARE(queue->importedUIDs.values(), (std::vector<QString>(3)));
  }

  void surplusElementsAreIgnoredWhenMerging() {
    Builder builder = documentOf(2);
    builder.add("reminderQueue", builder.date(Builder::kNow));
    ReminderQueue queue;
    QCOMPARE(*mergeDataWithDataDictionary(queue, toMerge(builder.finish())), (MergeCounts{2, 0}));
    queue.forEachColumn([](const auto& column) { QCOMPARE(column.size(), 2); });
  }

  void anArrayThatDoesNotReachANewReminderIsDamageAndMergesNothing_data() {
    QTest::addColumn<QString>("key");
    for (const QString& key : dataDictionaryKeys()) {
      if (key != u"reminderUUID") // which says how many there are
        QTest::newRow(qPrintable(key)) << key;
    }
  }
  void anArrayThatDoesNotReachANewReminderIsDamageAndMergesNothing() {
    QFETCH(QString, key);
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
};

QTEST_GUILESS_MAIN(DataDictionaryMergeTest)
#include "data_dictionary_merge_test.moc"
