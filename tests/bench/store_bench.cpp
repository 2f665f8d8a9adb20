// The store with many reminders: loading, saving, idling, memory.
#include "store/plist_writer.h"
#include "store/reminder_store.h"
#include "support/test_environment.h"

#include <QFile>

#include <benchmark/benchmark.h>
#include <malloc.h>

using namespace tockwise;

namespace {

const FakeClock& benchClock() {
  static const FakeClock clock(Date::fromUnixSeconds(1741079742));
  return clock;
}

Reminder reminderNumber(int i) {
  Reminder reminder;
  reminder.reminderQueue = benchClock().now().plusSeconds(3600 + 60.0 * i);
  reminder.reminderDateTimeCreated = benchClock().now().plusSeconds(-i);
  reminder.reminderDateTimeModified = benchClock().now().plusSeconds(-i * 0.5);
  reminder.reminderUUID = UUIDString();
  reminder.reminderDescriptions = QStringLiteral("Reminder number %1 of many, with a text").arg(i);
  reminder.reminderIntervals = {0, i % 3 == 0 ? 1 : 0, 0, 0};
  reminder.reminderOffsets = {0, i % 3, 0};
  return reminder;
}

// A store of its own with that many reminders on the disk.
class BenchStore {
 public:
  explicit BenchStore(int reminders) {
    const auto store = open();
    for (int i = 0; i < reminders; ++i)
      store->queue().append(reminderNumber(i));
    store->saveDefaults();
  }
  static std::unique_ptr<ReminderStore> open() {
    return ReminderStore::open(PreferencesStore::Paths::ofUser(), benchClock()).value();
  }

 private:
  TestEnvironment m_environment;
};

void load(benchmark::State& state) {
  const BenchStore store(int(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(BenchStore::open());
  const size_t before = mallinfo2().uordblks;
  const auto loaded = BenchStore::open();
  malloc_trim(0);
  state.counters["heapBytes"] = double(mallinfo2().uordblks - before);
}
BENCHMARK(load)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// One reminder changes and everything is on the disk again, fsync included.
void save(benchmark::State& state) {
  const BenchStore folder(int(state.range(0)));
  const auto store = BenchStore::open();
  qint64 count = 0;
  const qint64 before = store->preferences().bytesWritten();
  for (auto _ : state) {
    (void)store->queue().set<&Columns::reminderRecent>(0, ++count);
    store->saveDefaults();
  }
  state.counters["bytesWritten"] =
      double(store->preferences().bytesWritten() - before) / double(std::max<qint64>(1, count));
}
BENCHMARK(save)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// What an idle tick costs: the store is in step with its file.
void synchronizeIdle(benchmark::State& state) {
  const BenchStore folder(int(state.range(0)));
  const auto store = BenchStore::open();
  store->saveDefaults();
  const qint64 before = store->preferences().bytesWritten();
  for (auto _ : state)
    store->preferences().synchronize();
  state.counters["bytesWritten"] = double(store->preferences().bytesWritten() - before);
}
BENCHMARK(synchronizeIdle)->Arg(10000);

} // namespace
