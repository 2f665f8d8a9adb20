// What a tick with nothing to do may cost: nothing of the heap, nothing of the disk.
#include "engine/tick.h"
#include "support/fakes.h"

#include <QTest>

#include <cstdlib>
#include <new>

namespace {

qint64 g_allocations = 0;

} // namespace

void* operator new(std::size_t size) {
  ++g_allocations;
  if (void* memory = std::malloc(size))
    return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

using namespace tockwise;

class TickIdleTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void anIdleTickAllocatesAndSavesNothing() {
    constexpr Date now{790000000};
    ReminderQueue queue;
    for (int i = 0; i < 1000; ++i) {
      Reminder row;
      row.reminderQueue = now.plusSeconds(90 * 86400 + i);
      row.reminderOffsets = i % 3 == 0 ? Offset{1, 2, 3} : kBlankOffset;
      queue.append(row);
    }
    MemorySettings settings;
    FakeClock clock(now);
    RecordingFiringActions actions;
    Firing firing(queue, settings, clock, actions);
    int saves = 0;
    Tick tick(queue, firing, clock,
              {[] {}, [] {}, [&] { ++saves; }, [&] { ++saves; }, systemSteadyTime});
    tick.run();
    (void)tick.nextMoment();
    const quint64 revision = queue.revision();
    const qint64 before = g_allocations;
    for (int second = 0; second < 1000; ++second) {
      clock.advance(1);
      tick.run();
      (void)tick.nextMoment();
    }
    QCOMPARE(g_allocations - before, 0);
    QCOMPARE(saves, 0);
    QCOMPARE(queue.revision(), revision);
  }
};

QTEST_GUILESS_MAIN(TickIdleTest)
#include "tick_idle_test.moc"
