#include "engine/due_index.h"
#include "engine/repeat_rules.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>

using namespace tockwise;

namespace {

const Calendar& here() {
  return Calendar::current();
}

Date at(int year, int month, int day, int hour = 9, int minute = 0, int second = 0) {
  return here().dateWithYear(year, month, day, hour, minute, second);
}

const Date kNow = at(2025, 6, 10, 9, 0); // a Tuesday

Reminder dueAt(Date date) {
  Reminder row;
  row.reminderQueue = date;
  row.reminderUUID = UUIDString();
  return row;
}

} // namespace

class DueIndexTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void anEmptyQueueHasNoMoment() {
    const ReminderQueue queue;
    DueIndex index(queue);
    QVERIFY(!index.nextMoment(kNow, here()));
    QVERIFY(!index.nextDue(0, kNow, here()));
  }

  void theEarliestAlertDateIsTheNextMoment() {
    ReminderQueue queue;
    DueIndex index(queue);
    queue.append(dueAt(kNow.plusSeconds(7200)));
    QCOMPARE(index.nextMoment(kNow, here()), kNow.plusSeconds(7200));
    Reminder early = dueAt(at(2025, 6, 11, 10, 0));
    early.reminderOffsets = {1, 0, 30};
    queue.append(early);
    QCOMPARE(index.nextMoment(kNow, here()), at(2025, 6, 10, 9, 30));
    QVERIFY(queue.remove(1));
    QCOMPARE(index.nextMoment(kNow, here()), kNow.plusSeconds(7200));
  }

  void equalityCountsAsDue() {
    ReminderQueue queue;
    DueIndex index(queue);
    queue.append(dueAt(kNow.plusSeconds(1)));
    queue.append(dueAt(kNow));
    QCOMPARE(index.nextDue(0, kNow, here()), 1);
    QVERIFY(!index.nextDue(2, kNow, here()));
    QCOMPARE(index.nextMoment(kNow, here()), kNow);
    QVERIFY(!index.nextDue(0, kNow.plusSeconds(-0.001), here()));
  }

  void aOneTimeReminderThatHasFiredIsSpent() {
    ReminderQueue queue;
    DueIndex index(queue);
    Reminder row = dueAt(kNow);
    row.reminderRecent = 1;
    queue.append(row);
    QVERIFY(!index.nextMoment(kNow, here()));
    QVERIFY(!index.nextDue(0, kNow, here()));
    QVERIFY(queue.set<&Columns::reminderRecent>(0, qint64(0)));
    QCOMPARE(index.nextMoment(kNow, here()), kNow);
  }

  void aRepeatingReminderThatHasFiredIsNot() {
    ReminderQueue queue;
    DueIndex index(queue);
    Reminder row = dueAt(kNow.plusSeconds(60));
    row.reminderRecent = 5;
    row.reminderIntervals = {0, 0, 1, 0};
    queue.append(row);
    QCOMPARE(index.nextMoment(kNow, here()), kNow.plusSeconds(60));
  }

  void aHeldBackOneTimeReminderIsLookedAtWhenItMayBeAllowed() {
    ReminderQueue queue;
    DueIndex index(queue);
    Reminder row = dueAt(kNow);
    row.reminderExtras.days = {true, true, false, true, true, true, true};
    queue.append(row);
    QCOMPARE(index.nextMoment(kNow, here()), at(2025, 6, 11, 0, 0));
    row.reminderExtras.days.fill(false);
    QVERIFY(queue.replace(0, row));
    QVERIFY(!index.nextMoment(kNow, here()));
    row.reminderExtras.days.fill(true);
    row.reminderExtras.times = {9, 0, 10, 0};
    QVERIFY(queue.replace(0, row));
    QCOMPARE(index.nextMoment(kNow, here()), kNow.plusSeconds(1));
    QCOMPARE(index.nextMoment(kNow.plusSeconds(1), here()), kNow.plusSeconds(1));
  }

  void theClockSetBackIsNoticed() {
    ReminderQueue queue;
    DueIndex index(queue);
    Reminder row = dueAt(at(2025, 6, 10, 8, 0));
    row.reminderExtras.times = {8, 0, 8, 30};
    queue.append(row);
    QCOMPARE(index.nextMoment(kNow, here()), at(2025, 6, 11, 8, 0, 1));
    QCOMPARE(index.nextMoment(at(2025, 6, 10, 7, 0), here()), at(2025, 6, 10, 8, 0));
  }

  void anotherZoneIsNoticed() {
    const Calendar apia(QStringLiteral("Pacific/Apia"), QStringLiteral("en_US"));
    const Calendar berlin(QStringLiteral("Europe/Berlin"), QStringLiteral("en_US"));
    ReminderQueue queue;
    DueIndex index(queue);
    Reminder row = dueAt(berlin.dateWithYear(2025, 3, 30, 12, 0, 0));
    row.reminderOffsets = {1, 0, 0};
    queue.append(row);
    const Date now = row.reminderQueue.plusSeconds(-7 * 86400);
    QCOMPARE(index.nextMoment(now, apia), row.reminderQueue.plusSeconds(-86400));
    QCOMPARE(index.nextMoment(now, berlin), row.reminderQueue.plusSeconds(-82800));
  }

  void whatIsNoDateIsNeverDue() {
    ReminderQueue queue;
    DueIndex index(queue);
    queue.append(dueAt({std::nan("")}));
    QVERIFY(!index.nextMoment(kNow, here()));
    QVERIFY(!index.nextDue(0, kNow, here()));
  }

  void aRowOfShortColumnsIsTriedOnceWhenItFallsDue() {
    Columns columns;
    ReminderQueue::valuesOf(columns.reminderQueue) = {kNow};
    ReminderQueue queue;
    queue.setColumns(std::move(columns));
    DueIndex index(queue);
    QCOMPARE(index.nextMoment(kNow.plusSeconds(-5), here()), kNow);
    QCOMPARE(index.nextMoment(kNow, here()), kNow);
    QVERIFY(!index.nextMoment(kNow, here()));
    QVERIFY(!index.nextMoment(kNow.plusSeconds(1), here()));
    QCOMPARE(index.nextDue(0, kNow, here()), 0);
  }

  void theMomentIsThatOfAPlainScan() {
    QRandomGenerator dice(11);
    const auto below = [&](int bound) { return dice.bounded(bound); };
    ReminderQueue queue;
    DueIndex index(queue);
    for (int round = 0; round < 400; ++round) {
      const Date now = kNow.plusSeconds(below(20'000'000));
      Reminder row = dueAt(now.plusSeconds(below(4'000'000) - 300'000));
      if (below(2))
        row.reminderOffsets = {below(32), below(25), below(61)};
      row.reminderRecent = below(2);
      row.reminderIntervals = below(2) ? kBlankInterval : Interval{0, 1, 0, 0};
      if (queue.count() > 12)
        QVERIFY(queue.remove(below(12)));
      queue.append(row);

      std::optional<Date> earliest;
      for (qsizetype i = 0; i < queue.count(); ++i) {
        const Reminder r = *queue.reminder(i);
        if (r.reminderRecent != 0 && r.reminderIntervals == kBlankInterval)
          continue;
        const Date moment = std::max(now, alertDate(r.reminderQueue, r.reminderOffsets, here()));
        if (!earliest || moment < *earliest)
          earliest = moment;
      }
      QCOMPARE(index.nextMoment(now, here()), earliest);
      QCOMPARE(index.nextDue(0, now, here()).has_value(), earliest && *earliest <= now);
    }
  }
};

QTEST_GUILESS_MAIN(DueIndexTest)
#include "due_index_test.moc"
