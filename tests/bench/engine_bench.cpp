// What the engine costs: ticks, sorting, catching up, the calendar.
#include "dates/calendar.h"
#include "engine/repeat_rules.h"
#include "engine/tick.h"
#include "menu/sort/queue_sort.h"
#include "support/fakes.h"

#include <QRandomGenerator>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <numeric>

using namespace tockwise;

namespace {

qint64 g_allocations = 0;

} // namespace

// Counts what a tick allocates.
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

namespace {

const Date kNow{790000000};

/// A third of the reminders have offsets; the first falls due in an hour.
void fill(ReminderQueue& queue, int count) {
  QRandomGenerator dice(1);
  for (int i = 0; i < count; ++i) {
    Reminder row;
    row.reminderQueue = kNow.plusSeconds(40 * 86400 + dice.bounded(30'000'000));
    row.reminderDateTimeCreated = kNow.plusSeconds(-dice.bounded(30'000'000));
    row.reminderDateTimeModified = row.reminderDateTimeCreated;
    row.reminderUUID = UUIDString();
    row.reminderDescriptions =
        QStringLiteral("Reminder of %1 things to do").arg(dice.generate() % 100'000);
    if (i % 3 == 0)
      row.reminderOffsets = {dice.bounded(30), dice.bounded(24), dice.bounded(60)};
    queue.append(row);
  }
  Reminder first;
  first.reminderQueue = kNow.plusSeconds(3600);
  queue.append(first);
}

struct Engine {
  ReminderQueue queue;
  MemorySettings settings;
  FakePrompter prompter;
  FakeClock clock{kNow};
  RecordingFiringActions actions;
  Firing firing{queue, settings, clock, actions};
  QueueSort sort{queue, settings, prompter, [] {}};
  Tick tick{queue, firing, clock, {[this] { sort.sort(); }, [] {}, [] {}, [] {}, systemSteadyTime}};

  explicit Engine(int count) {
    settings.setValue(QStringLiteral("sortType"), 1);
    fill(queue, count);
  }
};

void tickIdle(benchmark::State& state) {
  Engine engine(int(state.range(0)));
  engine.tick.run();
  (void)engine.tick.nextMoment();
  const qint64 before = g_allocations;
  for (auto _ : state) {
    engine.clock.advance(1e-6);
    engine.tick.run();
    benchmark::DoNotOptimize(engine.tick.nextMoment());
  }
  state.counters["allocations"] =
      benchmark::Counter(double(g_allocations - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(tickIdle)->Arg(10'000);

void tickAfterAChange(benchmark::State& state) {
  Engine engine(int(state.range(0)));
  engine.tick.run();
  qint64 count = 0;
  for (auto _ : state) {
    (void)engine.queue.set<&Columns::reminderRecent>(1, ++count);
    engine.tick.run();
    benchmark::DoNotOptimize(engine.tick.nextMoment());
  }
}
BENCHMARK(tickAfterAChange)->Arg(10'000);

void sortShuffled(benchmark::State& state) {
  Engine engine(10'000);
  std::vector<quint32> shuffle(size_t(engine.queue.count()));
  std::iota(shuffle.begin(), shuffle.end(), 0);
  QRandomGenerator dice(2);
  std::shuffle(shuffle.begin(), shuffle.end(), dice);
  engine.settings.setValue(QStringLiteral("sortType"), int(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    (void)engine.queue.permute(shuffle);
    state.ResumeTiming();
    engine.sort.sort();
  }
}
BENCHMARK(sortShuffled)->Arg(1)->Arg(5)->Unit(benchmark::kMicrosecond);

void sortInOrder(benchmark::State& state) {
  Engine engine(10'000);
  engine.settings.setValue(QStringLiteral("sortType"), int(state.range(0)));
  engine.sort.sort();
  for (auto _ : state)
    benchmark::DoNotOptimize(orderOf(engine.queue, SortType(int(state.range(0)))));
}
BENCHMARK(sortInOrder)->Arg(1)->Arg(5)->Unit(benchmark::kMicrosecond);

/// Neighbours out of order are exchanged in all sixteen columns, and the walk starts again.
void exchangeSort(std::vector<Reminder>& rows) {
  for (size_t i = 0; i + 1 < rows.size();) {
    if (rows[i].reminderQueue > rows[i + 1].reminderQueue) {
      std::swap(rows[i], rows[i + 1]);
      i = 0;
    } else {
      ++i;
    }
  }
}

void sort300ByExchange(benchmark::State& state) {
  const Engine engine(299);
  std::vector<Reminder> rows;
  for (qsizetype i = 0; i < engine.queue.count(); ++i)
    rows.push_back(*engine.queue.reminder(i));
  for (auto _ : state) {
    auto copy = rows;
    exchangeSort(copy);
    benchmark::DoNotOptimize(copy.data());
  }
}
BENCHMARK(sort300ByExchange)->Unit(benchmark::kMicrosecond);

void sort300(benchmark::State& state) {
  const Engine unsorted(299);
  for (auto _ : state) {
    state.PauseTiming();
    ReminderQueue queue = unsorted.queue;
    state.ResumeTiming();
    const auto order = orderOf(queue, SortType::Date);
    if (*order)
      (void)queue.permute(**order);
  }
}
BENCHMARK(sort300)->Unit(benchmark::kMicrosecond);

void threeYearsMissed(benchmark::State& state) {
  const Interval intervals[] = {
      {0, 0, 0, 1}, {0, 0, 1, 0}, {0, 1, 0, 0}, {0, 1, 0, 1}, {1, 0, 0, 0}};
  const Calendar calendar(QStringLiteral("Europe/Berlin"), QStringLiteral("en_US"));
  const Date fireDate = kNow.plusSeconds(-3 * 365 * 86400);
  for (auto _ : state)
    benchmark::DoNotOptimize(nextFireDate(fireDate, intervals[state.range(0)], kNow, calendar));
}
BENCHMARK(threeYearsMissed)->DenseRange(0, 4);

void differenceSinceDate(benchmark::State& state) {
  const Calendar calendar(QStringLiteral("Europe/Berlin"), QStringLiteral("en_US"));
  std::vector<Date> dates;
  QRandomGenerator dice(3);
  for (int i = 0; i < 1000; ++i)
    dates.push_back(kNow.plusSeconds(dice.bounded(int(state.range(0)))));
  size_t next = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(calendar.differenceSinceDate(dates[++next % 1000], kNow));
}
BENCHMARK(differenceSinceDate)->Arg(86'400)->Arg(30'000'000)->Arg(300'000'000);

void dateString(benchmark::State& state) {
  const Calendar calendar(QStringLiteral("Europe/Berlin"), QStringLiteral("en_US"));
  double later = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(
        calendar.dateStringWithFormat(kNow.plusSeconds(later += 1001), kDisplayPattern));
}
BENCHMARK(dateString);

void currentCalendar(benchmark::State& state) {
  (void)Calendar::current();
  for (auto _ : state)
    benchmark::DoNotOptimize(&Calendar::current());
}
BENCHMARK(currentCalendar);

} // namespace
