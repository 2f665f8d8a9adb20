#include "engine/tick_timer.h"
#include "support/fakes.h"
#include "support/log_lines.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

struct Fixture {
  ReminderQueue queue;
  MemorySettings settings;
  FakeClock clock{Calendar::current().dateWithYear(2025, 6, 10, 9, 0, 0)};
  RecordingFiringActions actions;
  Firing firing{queue, settings, clock, actions};
  int ticks = 0;
  Tick tick{queue, firing, clock, {[this] { ++ticks; }, [] {}, [] {}, [] {}, [] { return 0ms; }}};
  FakeWakeTimer wakeTimer;
  FakePowerEvents power;
  struct Shot {
    std::chrono::milliseconds span;
    std::function<void()> work;
  };
  std::vector<Shot> shots;
  TickTimer timer{tick, wakeTimer, power, clock,
                  [this](std::chrono::milliseconds span, QObject*, std::function<void()> work) {
                    shots.push_back({span, std::move(work)});
                  }};

  Date now() const { return clock.now(); }
  void add(double secondsFromNow) {
    Reminder row;
    row.reminderQueue = now().plusSeconds(secondsFromNow);
    row.reminderUUID = UUIDString();
    queue.append(row);
  }
  /// The wake timer's alarm comes.
  void expire() {
    clock.set(*wakeTimer.armed);
    wakeTimer.expire();
  }
  /// Everything that makes it tick when it may.
  void urge() {
    timer.poke();
    timer.setEverySecond(true);
    wakeTimer.changeClock();
    QCoreApplication::processEvents();
  }
};

} // namespace

class TickTimerTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() { f = std::make_unique<Fixture>(); }

  void theStartTicksAtOnce() {
    const QSignalSpy ticked(&f->timer, &TickTimer::ticked);
    QCOMPARE(f->ticks, 0);
    f->timer.start();
    QCOMPARE(f->ticks, 1);
    QCOMPARE(ticked.size(), 1);
  }

  void anIdleQueueIsLookedAtOnceAMinute() {
    f->timer.start();
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(60));
    f->expire();
    QCOMPARE(f->ticks, 2);
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(60));
  }

  void theAlarmIsSetToTheMomentOfTheNextReminder() {
    f->add(12.5);
    f->timer.start();
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(12.5));
    f->expire();
    QCOMPARE(f->actions.alerts.size(), size_t(1));
    // Firing changed the queue: it falls into place at the next second.
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(0.5));
    f->expire();
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(60));
  }

  void everySecondMeansWholeSeconds() {
    f->timer.start();
    f->clock.advance(0.3);
    f->timer.setEverySecond(true);
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(0.7));
    f->expire();
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(1));
    f->timer.setEverySecond(false);
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(60));
  }

  void whatFallsDueBetweenTwoSecondsIsNotHeldUp() {
    f->add(0.4);
    f->timer.setEverySecond(true);
    f->timer.start();
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(0.4));
  }

  void pokesOfOneTurnAreOneTick() {
    f->timer.start();
    for (int i = 0; i < 5; ++i)
      f->timer.poke();
    QCOMPARE(f->ticks, 1);
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 2);
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 2);
    f->timer.poke();
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 3);
  }

  void aTickOfAnotherCauseAnswersThePoke() {
    f->timer.start();
    f->timer.poke();
    f->wakeTimer.changeClock();
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 2);
  }

  void aChangedQueueMovesTheAlarm() {
    f->timer.start();
    f->add(5);
    f->timer.poke();
    QCoreApplication::processEvents();
    QCOMPARE(f->wakeTimer.armed, f->now().plusSeconds(5));
  }

  void aChangedClockTicksAtOnce() {
    f->add(3600);
    f->timer.start();
    f->clock.advance(3600);
    f->wakeTimer.changeClock();
    QCOMPARE(f->actions.alerts.size(), size_t(1));
  }

  void beforeTheStartNothingTicks() {
    f->timer.poke();
    f->timer.setEverySecond(true);
    f->wakeTimer.changeClock();
    f->power.sleep();
    f->power.wake();
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 0);
    QVERIFY(!f->wakeTimer.armed);
    QVERIFY(f->shots.empty());
    f->timer.start();
    QCOMPARE(f->ticks, 1);
  }

  void asleepNothingTicks() {
    f->timer.start();
    f->power.sleep();
    QVERIFY(!f->wakeTimer.armed);
    f->urge();
    QCOMPARE(f->ticks, 1);
    QVERIFY(!f->wakeTimer.armed);
  }

  void afterWakingNothingFiresForTwentySecondsAndThenEverything() {
    f->add(10);
    f->add(20);
    f->timer.start();
    f->power.sleep();
    f->clock.advance(3600);
    f->power.wake();
    QVERIFY(f->tick.wait());
    QCOMPARE(f->ticks, 2);
    QCOMPARE(f->shots.size(), size_t(1));
    QCOMPARE(f->shots[0].span, std::chrono::milliseconds(20s));
    f->clock.advance(19);
    f->wakeTimer.expire();
    QCOMPARE(f->actions.alerts.size(), size_t(0));
    f->clock.advance(1);
    const LogLines log;
    f->shots[0].work();
    QCOMPARE(log.lines(), QStringList{QStringLiteral("Set Wait to NO")});
    QVERIFY(!f->tick.wait());
    QCOMPARE(f->actions.alerts.size(), size_t(2));
  }

  void settingTheClockMeanwhileDoesNotEndTheHold() {
    f->add(10);
    f->timer.start();
    f->power.sleep();
    f->power.wake();
    f->clock.advance(86400);
    f->wakeTimer.changeClock();
    QCOMPARE(f->actions.alerts.size(), size_t(0));
    f->shots[0].work();
    QCOMPARE(f->actions.alerts.size(), size_t(1));
  }

  void theHoldOfTheLastWakeCounts() {
    f->add(10);
    f->timer.start();
    f->power.wake();
    f->clock.advance(15);
    f->power.sleep();
    f->power.wake();
    const LogLines log;
    f->shots[0].work();
    QVERIFY(f->tick.wait());
    QCOMPARE(log.lines(), QStringList());
    f->shots[1].work();
    QVERIFY(!f->tick.wait());
    QCOMPARE(f->actions.alerts.size(), size_t(1));
  }

  void aTickThatFellIntoARunningOneIsMadeUpFor() {
    f->add(0);
    FakeWakeTimer wakeTimer;
    RecordingFiringActions nesting;
    nesting.onTask = [&] { wakeTimer.changeClock(); };
    Firing firing(f->queue, f->settings, f->clock, nesting);
    int ticks = 0;
    Tick tick(f->queue, firing, f->clock,
              {[&] { ++ticks; }, [] {}, [] {}, [] {}, [] { return 0ms; }});
    TickTimer timer(tick, wakeTimer, f->power, f->clock);
    timer.start();
    QCOMPARE(ticks, 1);
    QVERIFY(wakeTimer.armed);
    QCoreApplication::processEvents();
    QCOMPARE(ticks, 2);
    QCoreApplication::processEvents();
    QCOMPARE(ticks, 2);
  }

  void heldNothingTicks() {
    f->add(10);
    f->timer.start();
    f->timer.hold(true);
    QVERIFY(!f->wakeTimer.armed);
    f->clock.advance(3600);
    f->urge();
    QCOMPARE(f->ticks, 1);
    QVERIFY(!f->wakeTimer.armed);
    QCOMPARE(f->actions.alerts.size(), size_t(0));
  }

  void theEndOfAHoldTicksAtOnceAndFiresWhatFellDue() {
    f->add(10);
    f->add(20);
    f->timer.start();
    f->timer.hold(true);
    f->clock.advance(60);
    f->timer.hold(false);
    QCOMPARE(f->ticks, 2);
    QCOMPARE(f->actions.alerts.size(), size_t(2));
    QVERIFY(f->wakeTimer.armed);
    f->timer.hold(false); // again: nothing more to end
    QCOMPARE(f->ticks, 2);
  }

  void aPokeFromBeforeAHoldWaitsForItsEnd() {
    f->timer.start();
    f->timer.poke();
    f->timer.hold(true);
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 1);
    f->timer.hold(false);
    QCOMPARE(f->ticks, 2);
    f->timer.poke();
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 3);
  }

  void aHoldBeforeTheStartHoldsTheFirstTick() {
    f->timer.hold(true);
    f->timer.start();
    QCOMPARE(f->ticks, 0);
    f->timer.hold(false);
    QCOMPARE(f->ticks, 1);
  }

  void aHoldThatEndsAsleepLeavesTheTickToTheWaking() {
    f->timer.start();
    f->timer.hold(true);
    f->power.sleep();
    f->timer.hold(false);
    QCOMPARE(f->ticks, 1);
    QVERIFY(!f->wakeTimer.armed);
    f->power.wake();
    QCOMPARE(f->ticks, 2);
    QVERIFY(f->wakeTimer.armed);
  }

  void wakingWithinAHoldFiresNothingUntilBothHoldsAreOver_data() {
    QTest::addColumn<bool>("previewClosesFirst");
    QTest::newRow("the preview closes first") << true;
    QTest::newRow("the twenty seconds end first") << false;
  }
  void wakingWithinAHoldFiresNothingUntilBothHoldsAreOver() {
    QFETCH(const bool, previewClosesFirst);
    f->add(10);
    f->timer.start();
    f->timer.hold(true);
    f->power.sleep();
    f->clock.advance(3600);
    f->power.wake();
    QCOMPARE(f->ticks, 1);
    QVERIFY(!f->wakeTimer.armed);
    QCOMPARE(f->shots.size(), size_t(1));
    const auto endTwentySeconds = [&] { f->shots[0].work(); };
    const auto closePreview = [&] { f->timer.hold(false); };
    previewClosesFirst ? closePreview() : endTwentySeconds();
    QCOMPARE(f->actions.alerts.size(), size_t(0));
    previewClosesFirst ? endTwentySeconds() : closePreview();
    QCOMPARE(f->actions.alerts.size(), size_t(1));
    QVERIFY(!f->tick.wait());
  }

  void aHoldWithinATickLeavesTheAlarmOff() {
    f->add(0);
    RecordingFiringActions holding;
    Firing firing(f->queue, f->settings, f->clock, holding);
    Tick tick(f->queue, firing, f->clock, {[] {}, [] {}, [] {}, [] {}, [] { return 0ms; }});
    FakeWakeTimer wakeTimer;
    TickTimer timer(tick, wakeTimer, f->power, f->clock);
    holding.onTask = [&] { timer.hold(true); };
    timer.start();
    QVERIFY(!wakeTimer.armed);
    timer.hold(false);
    QVERIFY(wakeTimer.armed);
  }

  void stoppedNothingTicksWhateverEnds() {
    f->add(10);
    f->timer.start();
    f->timer.hold(true);
    f->clock.advance(3600);
    f->timer.poke();
    f->timer.stop();
    f->timer.hold(false);
    f->timer.setEverySecond(true);
    f->wakeTimer.changeClock();
    f->power.sleep();
    f->power.wake();
    QCoreApplication::processEvents();
    QCOMPARE(f->ticks, 1);
    QVERIFY(!f->wakeTimer.armed);
    QVERIFY(f->shots.empty());
    QCOMPARE(f->actions.alerts.size(), size_t(0));
  }

  void theSystemsSingleShotRunsItsWorkUnlessItsContextIsGone() {
    const auto shot = TickTimer::systemSingleShot();
    int runs = 0;
    QObject context;
    auto gone = std::make_unique<QObject>();
    shot(1ms, gone.get(), [&] { runs += 10; });
    gone.reset();
    shot(2ms, &context, [&] { ++runs; });
    QTRY_COMPARE(runs, 1);
  }

 private:
  std::unique_ptr<Fixture> f;
};

QTEST_GUILESS_MAIN(TickTimerTest)
#include "tick_timer_test.moc"
