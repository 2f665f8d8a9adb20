#include "menu/sort/folded_text.h"
#include "menu/sort/queue_sort.h"
#include "support/fakes.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <memory>

using namespace tockwise;

namespace {

constexpr Date kNow{790000000};

Reminder named(const QString& text, Date fireDate = kNow) {
  Reminder row;
  row.reminderQueue = fireDate;
  row.reminderDateTimeCreated = kNow;
  row.reminderDateTimeModified = kNow;
  row.reminderUUID = UUIDString();
  row.reminderDescriptions = text;
  return row;
}

QStringList texts(const ReminderQueue& queue) {
  QStringList result;
  for (const QString& text : queue->reminderDescriptions.values())
    result += text;
  return result;
}

struct Fixture {
  ReminderQueue queue;
  MemorySettings settings;
  FakePrompter prompter;
  int saves = 0;
  QueueSort sort{queue, settings, prompter, [this] { ++saves; }};

  Fixture() { settings.setValue(QStringLiteral("sortType"), 1); }
};

/// The described algorithm: neighbours out of order are exchanged, and the walk starts again.
class ExchangeSort {
 public:
  static std::vector<Reminder> sorted(std::vector<Reminder> rows, int code) {
    for (size_t i = 0; rows.size() > 1 && i < rows.size() - 1;) {
      if (isSwapOutcome(rows[i], rows[i + 1], code)) {
        std::swap(rows[i], rows[i + 1]);
        i = 0;
      } else {
        ++i;
      }
    }
    return rows;
  }

 private:
  static int compare(Date left, Date right) { return left < right ? -1 : right < left ? 1 : 0; }
  static int compareKeys(const Reminder& left, const Reminder& right, int code) {
    switch (code) {
    case 1:
    case 2:
      return compare(left.reminderQueue, right.reminderQueue);
    case 3:
    case 4:
      return compare(left.reminderDateTimeCreated, right.reminderDateTimeCreated);
    case 5:
    case 6:
      return left.reminderDescriptions.compare(right.reminderDescriptions, Qt::CaseInsensitive);
    case 7:
    case 8:
      return compare(left.reminderDateTimeFired, right.reminderDateTimeFired);
    default:
      return compare(left.reminderDateTimeModified, right.reminderDateTimeModified);
    }
  }
  static bool isSwapOutcome(const Reminder& left, const Reminder& right, int code) {
    const bool swapsDescending = code == 1 || code == 4 || code == 5 || code == 8 || code == 10;
    const int outcome = compareKeys(left, right, code);
    return swapsDescending ? outcome > 0 : outcome < 0;
  }
};

Reminder randomRow(QRandomGenerator& dice, int serial) {
  static const char16_t* const names[] = {u"apple", u"Apple", u"Banana",  u"banana", u"",
                                          u"Äpfel", u"äpfel", u"Zürich",  u"zÜrich", u"apple pie",
                                          u"APPLE", u"banan", u"Σίσυφος", u"σίσυφος"};
  const auto date = [&] { return kNow.plusSeconds(dice.bounded(6) * 60); };
  Reminder row = named(QString::fromUtf16(names[dice.bounded(int(std::size(names)))]), date());
  row.reminderDateTimeCreated = date();
  row.reminderDateTimeModified = date();
  row.reminderDateTimeFired = dice.bounded(3) ? kDistantPast : date();
  row.reminderRecent = serial;
  row.reminderRTFs = QByteArray::number(serial);
  row.reminderTypes = QString::number(serial);
  row.reminderIntervals = {serial, 0, 0, 1};
  row.reminderTasks = {false, 1, QString::number(serial)};
  row.reminderExtras.times = {serial, 0, 0, 0};
  row.reminderOffsets = {serial, 0, 0};
  row.importedUIDs = QString::number(serial);
  row.reminderSendSMS = serial % 2;
  row.reminderSendEmail = serial % 3 == 0;
  return row;
}

} // namespace

class QueueSortTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() { f = std::make_unique<Fixture>(); }

  void sortsAsTheExchangeSortDoes_data() {
    QTest::addColumn<int>("code");
    for (const SortOrder& order : sortOrders())
      QTest::addRow("%d", int(order.type)) << int(order.type);
  }
  void sortsAsTheExchangeSortDoes() {
    QFETCH(int, code);
    QRandomGenerator dice{quint32(code)};
    f->settings.setValue(QStringLiteral("sortType"), code);
    for (int round = 0; round < 60; ++round) {
      f->queue.clear();
      std::vector<Reminder> rows;
      for (int i = dice.bounded(40); i > 0; --i) {
        rows.push_back(randomRow(dice, i));
        f->queue.append(rows.back());
      }
      const auto expected = ExchangeSort::sorted(rows, code);
      f->sort.sort();
      QCOMPARE(f->queue.count(), qsizetype(expected.size()));
      for (size_t i = 0; i < expected.size(); ++i)
        QVERIFY(*f->queue.reminder(qsizetype(i)) == expected[i]);
      const quint64 revision = f->queue.revision();
      f->sort.sort();
      QCOMPARE(f->queue.revision(), revision);
    }
  }

  void aQueueOfNoneOrOneIsStillSaved() {
    f->sort.sort();
    QCOMPARE(f->saves, 1);
    f->queue.append(named(QStringLiteral("a")));
    f->sort.sort();
    QCOMPARE(f->saves, 2);
    QCOMPARE(texts(f->queue), QStringList{QStringLiteral("a")});
  }

  void equalDatesKeepTheirOrder() {
    f->queue.append(named(QStringLiteral("second")));
    f->queue.append(named(QStringLiteral("first")));
    const quint64 revision = f->queue.revision();
    f->sort.sort();
    QCOMPARE(f->queue.revision(), revision);
  }

  void namesAreComparedWithoutCase() {
    f->queue.append(named(QStringLiteral("Banana")));
    f->queue.append(named(QStringLiteral("apple")));
    f->settings.setValue(QStringLiteral("sortType"), 5);
    f->sort.sort();
    QCOMPARE(texts(f->queue), (QStringList{QStringLiteral("apple"), QStringLiteral("Banana")}));
    f->settings.setValue(QStringLiteral("sortType"), 6);
    f->sort.sort();
    QCOMPARE(texts(f->queue), (QStringList{QStringLiteral("Banana"), QStringLiteral("apple")}));
  }

  void byDateCreatedTheNewestIsOnTop() {
    f->queue.append(named(QStringLiteral("old")));
    Reminder row = named(QStringLiteral("new"));
    row.reminderDateTimeCreated = kNow.plusSeconds(1);
    f->queue.append(row);
    f->sort.sortBy(SortType::DateCreated);
    f->sort.sort();
    QCOMPARE(texts(f->queue), (QStringList{QStringLiteral("new"), QStringLiteral("old")}));
  }

  void anyOtherCodeBeepsEachTimeAndSortsNothing() {
    f->queue.append(named(QStringLiteral("b"), kNow.plusSeconds(1)));
    f->queue.append(named(QStringLiteral("a")));
    const quint64 revision = f->queue.revision();
    int beeps = 0;
    for (const qint64 code : {qint64(0), qint64(11), qint64(-1), qint64(1) << 32 | 1}) {
      f->settings.setValue(QStringLiteral("sortType"), code);
      f->sort.sort();
      QCOMPARE(f->prompter.beeps, ++beeps);
      QCOMPARE(f->sort.sortTypeText(), QString());
      QCOMPARE(f->prompter.beeps, ++beeps);
      QVERIFY(!f->sort.sortType());
    }
    QCOMPARE(f->queue.revision(), revision);
    QCOMPARE(f->saves, 0);
  }

  void theTextsAreThoseOfTheOrders() {
    const QStringList expected =
        QStringLiteral("date|reverse date|creation date|reverse creation date|name|"
                       "reverse name|fired date|reverse fired date|modification date|"
                       "reverse modification date")
            .split(u'|');
    for (const SortOrder& order : sortOrders()) {
      f->sort.sortBy(order.type);
      QCOMPARE(f->sort.sortType(), order.type);
      QCOMPARE(f->sort.sortTypeText(), expected[int(order.type) - 1]);
    }
    QCOMPARE(QString::fromUtf16(sortOrders()[9].title), QStringLiteral("By Reverse Date Modified"));
  }

  void choosingOneOfTheLastFourGoesToTheDiskAtOnce() {
    for (int code = 1; code <= 10; ++code) {
      const int before = f->settings.synchronizations();
      f->sort.sortBy(SortType(code));
      QCOMPARE(f->settings.synchronizations() - before, code >= 7 ? 1 : 0);
      QCOMPARE(f->settings.integer(QStringLiteral("sortType")), code);
    }
  }

  void anotherOrderIsAppliedToAnUnchangedQueue() {
    f->queue.append(named(QStringLiteral("a")));
    f->queue.append(named(QStringLiteral("b"), kNow.plusSeconds(1)));
    f->sort.sort();
    f->sort.sortBy(SortType::DateReverse);
    f->sort.sort();
    QCOMPARE(texts(f->queue), (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
  }

  void whatIsNoDateComesLast() {
    f->queue.append(named(QStringLiteral("none"), {std::nan("")}));
    f->queue.append(named(QStringLiteral("later"), kNow.plusSeconds(5)));
    f->queue.append(named(QStringLiteral("also none"), {std::nan("")}));
    f->queue.append(named(QStringLiteral("soon")));
    f->sort.sort();
    QCOMPARE(texts(f->queue).join(u','), QStringLiteral("soon,later,none,also none"));
    f->sort.sortBy(SortType::DateReverse);
    f->sort.sort();
    QCOMPARE(texts(f->queue).join(u','), QStringLiteral("none,also none,later,soon"));
  }

  void columnsThatDisagreeAreLeftAloneAndNotSaved() {
    Columns columns;
    using Q = ReminderQueue;
    Q::valuesOf(columns.reminderQueue) = {kNow.plusSeconds(1), kNow};
    Q::valuesOf(columns.reminderDescriptions) = {QStringLiteral("a")};
    f->queue.setColumns(std::move(columns));
    f->sort.sort();
    QCOMPARE(f->saves, 0);
    QCOMPARE(f->queue->reminderQueue.values().front(), kNow.plusSeconds(1));
    f->sort.sortBy(SortType::DateFired);
    f->sort.sort();
    QCOMPARE(f->saves, 0);
  }

  void importedUIDsAreBroughtToTheQueuesLength() {
    Columns columns;
    ReminderQueue::valuesOf(columns.reminderQueue) = {kNow, kNow.plusSeconds(1)};
    f->queue.setColumns(std::move(columns));
    f->sort.sort();
    QCOMPARE(f->queue->importedUIDs.size(), 2);
  }

  void foldedTextsCompareAsTheTextsDo() {
    QRandomGenerator dice(3);
    std::vector<QString> names;
    for (int i = 0; i < 60; ++i)
      names.push_back(randomRow(dice, i).reminderDescriptions + QString(dice.bounded(4), u'\0'));
    const FoldedTexts folded(names);
    for (quint32 a = 0; a < names.size(); ++a) {
      for (quint32 b = 0; b < names.size(); ++b)
        QCOMPARE(folded.isBefore(a, b), compareFolded(names[a], names[b]) < 0);
    }
  }

 private:
  std::unique_ptr<Fixture> f;
};

QTEST_GUILESS_MAIN(QueueSortTest)
#include "queue_sort_test.moc"
