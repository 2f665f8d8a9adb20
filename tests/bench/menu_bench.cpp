// The status menu as data: its structure alone, what a second costs while it is open, and all of
// its texts.
#include "dates/calendar.h"
#include "menu/status_menu.h"

#include <benchmark/benchmark.h>

using namespace tockwise;

namespace {

struct Bench {
  explicit Bench(int count) {
    for (int i = 0; i < count; ++i) {
      Reminder reminder;
      reminder.reminderQueue = now.plusSeconds(60 + i * 977.0);
      reminder.reminderDateTimeCreated = now.plusSeconds(-3600.0 * i);
      reminder.reminderDateTimeFired = i % 3 == 0 ? now.plusSeconds(-500.0 * i) : kDistantPast;
      reminder.reminderUUID = UUIDString();
      reminder.reminderDescriptions = QStringLiteral("Reminder number %1").arg(i);
      queue.append(reminder);
    }
  }
  Date now{790000000};
  ReminderQueue queue;
  MemorySettings settings{{{QStringLiteral("useAbsolute"), true},
                           {QStringLiteral("useCountdown"), true},
                           {QStringLiteral("truncateReminders"), true}}};
  MenuInput input() const {
    MenuInput input;
    input.queue = &queue;
    input.settings = &settings;
    input.sortTypeText = QStringLiteral("date");
    input.now = now;
    return input;
  }
};

void menuStructure(benchmark::State& state) {
  const Bench bench(int(state.range(0)));
  for (auto _ : state) {
    StatusMenu menu(bench.input(), Calendar::current());
    benchmark::DoNotOptimize(menu.entries().size());
  }
}

void menuSecond(benchmark::State& state) {
  const Bench bench(int(state.range(0)));
  const StatusMenu before(bench.input(), Calendar::current());
  for (auto _ : state) {
    StatusMenu menu(bench.input(), Calendar::current());
    benchmark::DoNotOptimize(menuChanges(before.entries(), menu.entries()).isEmpty());
  }
}

void menuTexts(benchmark::State& state) {
  const Bench bench(int(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(buildStatusMenu(bench.input(), Calendar::current()).size());
}

} // namespace

BENCHMARK(menuStructure)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(menuSecond)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(menuTexts)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
