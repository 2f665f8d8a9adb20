#include "engine/tick.h"
#include "support/fakes.h"
#include "support/log_lines.h"

#include <QTest>

#include <memory>
#include <stdexcept>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

Date at(int year, int month, int day, int hour = 9, int minute = 0, int second = 0) {
  return Calendar::current().dateWithYear(year, month, day, hour, minute, second);
}

struct Fixture {
  ReminderQueue queue;
  MemorySettings settings;
  FakeClock clock{at(2025, 6, 10, 9, 0)};
  RecordingFiringActions actions;
  Firing firing{queue, settings, clock, actions};
  std::chrono::milliseconds steady{0};
  QStringList calls;
  std::function<void()> onSort = [] {};
  Tick tick{queue,
            firing,
            clock,
            {[this] {
               calls += QStringLiteral("sort");
               onSort();
             },
             [this] { calls += QStringLiteral("synchronize"); },
             [this] { calls += QStringLiteral("save"); },
             [this] { calls += QStringLiteral("modified"); }, [this] { return steady; }}};

  Reminder add(const char* text, double secondsFromNow = 0) {
    Reminder row;
    row.reminderQueue = clock.now().plusSeconds(secondsFromNow);
    row.reminderUUID = UUIDString();
    row.reminderDescriptions = QString::fromLatin1(text);
    queue.append(row);
    return row;
  }
  QStringList alerts() const {
    QStringList texts;
    for (const AlertRequest& request : actions.alerts)
      texts += request.reminder;
    return texts;
  }
  QStringList tickAndTakeCalls() {
    calls.clear();
    tick.run();
    return calls;
  }
};

QStringList words(const char* text) {
  return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

class TickTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() { f = std::make_unique<Fixture>(); }

  void theWorkIsDoneInOrder() {
    f->add("a");
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize save modified"));
    QCOMPARE(f->alerts(), words("a"));
  }

  void anIdleTickSavesNothing() {
    f->add("a", 60);
    const quint64 revision = f->queue.revision();
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize"));
    QCOMPARE(f->queue.revision(), revision);
    QCOMPARE(f->tick.nextMoment(), f->clock.now().plusSeconds(60));
  }

  void anAlertDateOfNowFires() {
    f->add("a", 10);
    f->clock.advance(9);
    f->tick.run();
    QCOMPARE(f->alerts(), QStringList());
    f->clock.advance(1);
    f->tick.run();
    QCOMPARE(f->alerts(), words("a"));
  }

  void anOffsetFiresThatMuchEarlier() {
    Reminder row = f->add("a");
    row.reminderQueue = at(2025, 6, 12, 10, 0);
    row.reminderOffsets = {1, 0, 30};
    QVERIFY(f->queue.replace(0, row));
    f->clock.set(at(2025, 6, 11, 9, 29, 59));
    f->tick.run();
    QCOMPARE(f->alerts(), QStringList());
    f->actions.onAlert = [&](const AlertRequest& request) {
      QCOMPARE(request.date, row.reminderQueue);
    };
    f->clock.set(at(2025, 6, 11, 9, 30));
    f->tick.run();
    QCOMPARE(f->alerts(), words("a"));
  }

  void dueRemindersFireInTheQueuesOrder() {
    f->add("a", -1);
    f->add("later", 1);
    f->add("b", -100);
    f->add("c", -50);
    f->onSort = [this] { QVERIFY(f->queue.permute({3, 0, 1, 2})); };
    f->tick.run();
    QCOMPARE(f->alerts(), words("c a b"));
  }

  void aFiredReminderStaysAndDoesNotFireAgain() {
    f->add("a");
    f->tick.run();
    f->clock.advance(1);
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize"));
    QCOMPARE(f->queue.count(), 1);
    QCOMPARE(f->alerts(), words("a"));
    QVERIFY(!f->tick.nextMoment());
  }

  void aChangedQueueFallsIntoPlaceWithTheNextSecond() {
    f->add("a", 60);
    f->tick.run();
    f->clock.advance(0.25);
    f->add("b", 30);
    QCOMPARE(f->tick.nextMoment(), f->clock.now().plusSeconds(0.75));
    f->tick.setWait(true);
    QCOMPARE(f->tick.nextMoment(), f->clock.now().plusSeconds(0.75));
    f->tick.run();
    QVERIFY(!f->tick.nextMoment());
    f->tick.setWait(false);
    QCOMPARE(f->tick.nextMoment(), f->clock.now().plusSeconds(30));
  }

  void aRefusedRepeatingReminderIsSaved() {
    Reminder row = f->add("a");
    row.reminderIntervals = {0, 1, 0, 0};
    row.reminderExtras.days.fill(false);
    QVERIFY(f->queue.replace(0, row));
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize save modified"));
    QCOMPARE(f->queue.reminder(0)->reminderQueue, at(2025, 6, 11, 9, 0));
    QCOMPARE(f->alerts(), QStringList());
  }

  void aHeldBackReminderFiresWhenItsWindowOpens() {
    Reminder row = f->add("a");
    row.reminderExtras.times = {9, 0, 10, 0};
    QVERIFY(f->queue.replace(0, row));
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize")); // exactly at the start: not yet
    QCOMPARE(f->tick.nextMoment(), f->clock.now().plusSeconds(1));
    f->clock.advance(1);
    f->tick.run();
    QCOMPARE(f->alerts(), words("a"));
  }

  void whileWaitingNothingFires() {
    f->add("a");
    f->tick.setWait(true);
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize"));
    QVERIFY(!f->tick.nextMoment());
    f->tick.setWait(false);
    f->tick.run();
    QCOMPARE(f->alerts(), words("a"));
  }

  void importedUIDsAreBroughtToTheQueuesLength() {
    Columns columns;
    ReminderQueue::valuesOf(columns.reminderQueue) = {f->clock.now().plusSeconds(60)};
    f->queue.setColumns(std::move(columns));
    f->tick.setWait(true);
    f->tick.run();
    QCOMPARE(f->queue->importedUIDs.size(), 0);
    f->tick.setWait(false);
    f->tick.run();
    QCOMPARE(f->queue->importedUIDs.size(), 1);
  }

  void everyChangeIsSavedWhenSavesAreFarApart() {
    for (const char* text : {"a", "b", "c"})
      f->add(text);
    f->actions.onAlert = [this](const AlertRequest&) { f->steady += 100ms; };
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize save save save modified"));
  }

  void closeSavesOfOnePassAreMerged() {
    for (int i = 0; i < 500; ++i)
      f->add("a");
    f->actions.onAlert = [this](const AlertRequest&) { f->steady += 1ms; };
    QCOMPARE(f->tickAndTakeCalls().count(QStringLiteral("save")), 6);
    QCOMPARE(f->calls.last(), QStringLiteral("modified"));
    QCOMPARE(f->alerts().size(), 500);
  }

  void aFailingReminderIsLoggedAndTheTickGoesOn() {
    f->add("a");
    f->add("bad");
    f->add("c");
    f->actions.onAlert = [](const AlertRequest& request) {
      if (request.reminder == u"bad")
        throw std::runtime_error("the alert failed");
    };
    const LogLines log;
    f->tick.run();
    QCOMPARE(f->alerts(), words("a bad c"));
    QCOMPARE(log.lines(), QStringList{QStringLiteral("the alert failed")});
  }

  void aRowOfShortColumnsIsLoggedAndTheTickGoesOn() {
    Columns columns;
    ReminderQueue::valuesOf(columns.reminderQueue) = {f->clock.now()};
    f->queue.setColumns(std::move(columns));
    const LogLines log;
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize"));
    QCOMPARE(log.lines().size(), 1);
    f->clock.advance(1);
    f->tick.run();
    QCOMPARE(log.lines().size(), 1);
  }

  void aNestedTickDoesNothing() {
    f->add("a");
    f->add("b");
    f->actions.onAlert = [this](const AlertRequest&) {
      QVERIFY(f->tick.isRunning());
      f->tick.run();
    };
    QCOMPARE(f->tickAndTakeCalls().count(QStringLiteral("sort")), 1);
    QCOMPARE(f->alerts(), words("a b"));
    QVERIFY(!f->tick.isRunning());
  }

  void theCountIsReadAgainBeforeEachStep() {
    f->add("a");
    f->add("b");
    f->add("c");
    f->actions.onAlert = [this](const AlertRequest& request) {
      if (request.reminder == u"a") {
        QVERIFY(f->queue.remove(2));
        f->add("d");
        f->add("e");
      }
    };
    f->tick.run();
    QCOMPARE(f->alerts(), words("a b d e"));
  }

  void aQueueClearedByAFiringEndsThePass() {
    f->add("a");
    f->add("b");
    f->actions.onAlert = [this](const AlertRequest&) { f->queue.clear(); };
    QCOMPARE(f->tickAndTakeCalls(), words("sort synchronize save modified"));
    QCOMPARE(f->alerts(), words("a"));
  }

  void anOffsetLongerThanTheIntervalFiresOnceASecondUntilItHasCaughtUp() {
    Reminder row = f->add("a");
    row.reminderQueue = f->clock.now();
    row.reminderIntervals = {0, 0, 1, 0};
    row.reminderOffsets = {0, 3, 0};
    QVERIFY(f->queue.replace(0, row));
    for (int second = 0; second < 6; ++second) {
      for (int times = 0; times < 3; ++times) { // however often it is asked in that second
        f->tick.run();
        QCOMPARE(f->alerts().size(), std::min(second + 1, 4));
        f->clock.advance(0.25);
      }
      f->clock.advance(0.25);
    }
    QCOMPARE(f->queue.reminder(0)->reminderQueue, row.reminderQueue.plusSeconds(4 * 3600));
  }

  void anEditAtTheMomentOfFiringFiresAtOnce() {
    Reminder row = f->add("a");
    row.reminderIntervals = {0, 0, 1, 0};
    row.reminderOffsets = {0, 3, 0};
    QVERIFY(f->queue.replace(0, row));
    f->tick.run();
    row.reminderQueue = row.reminderQueue.plusSeconds(60);
    QVERIFY(f->queue.replace(0, row));
    f->tick.run();
    QCOMPARE(f->alerts(), words("a a"));
  }

  void theClockSetBackFiresNothingTwice() {
    f->add("once");
    Reminder row = f->add("daily");
    row.reminderIntervals = {0, 1, 0, 0};
    QVERIFY(f->queue.replace(1, row));
    f->tick.run();
    f->clock.set(at(2025, 6, 10, 8, 0));
    f->tick.run();
    f->clock.set(at(2025, 6, 10, 9, 0));
    f->tick.run();
    QCOMPARE(f->alerts(), words("once daily"));
    QCOMPARE(f->tick.nextMoment(), at(2025, 6, 11, 9, 0));
  }

 private:
  std::unique_ptr<Fixture> f;
};

QTEST_GUILESS_MAIN(TickTest)
#include "tick_test.moc"
