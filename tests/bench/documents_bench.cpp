// Reminders documents of many reminders with rich text: saving, opening, merging.
#include "store/archive/text_archive.h"
#include "store/documents/data_dictionary.h"

#include <QLoggingCategory>

#include <benchmark/benchmark.h>

#include <map>

using namespace tockwise;

namespace {

constexpr Date kNow{790000000};
constexpr ReminderQueue::Pads kPads{kNow, false, false};

// The text as somebody writes who likes formatting, a little: five runs.
QByteArray richText(int number) {
  AttributedText text;
  for (int run = 0; run < 5; ++run) {
    TextAttributes attributes;
    attributes.font = TextFont{
        run % 2 ? QStringLiteral("Helvetica") : QStringLiteral("Helvetica-Bold"), 12.0, {}};
    attributes.color = TextColor{0xff000000U | quint32(run) * 20, false, {}};
    text.append(QStringLiteral("run %1 of reminder %2\n").arg(run).arg(number), attributes);
  }
  return archiveText(text);
}

Reminder reminderNumber(int i) {
  Reminder reminder;
  reminder.reminderQueue = kNow.plusSeconds(3600 + 60.0 * i);
  reminder.reminderDateTimeCreated = kNow.plusSeconds(-i);
  reminder.reminderDateTimeModified = kNow.plusSeconds(-i * 0.5);
  reminder.reminderUUID = UUIDString();
  reminder.reminderDescriptions = QStringLiteral("Reminder number %1 of many, with a text").arg(i);
  reminder.reminderRTFs = richText(i);
  reminder.reminderIntervals = {0, i % 3 == 0 ? 1 : 0, 0, 0};
  reminder.reminderOffsets = {0, i % 3, 0};
  if (i % 5 == 0)
    reminder.reminderTasks = {false, Task::Document, QStringLiteral("/home/me/%1.pdf").arg(i)};
  return reminder;
}

const ReminderQueue& queueOf(int reminders) {
  static std::map<int, ReminderQueue> queues;
  ReminderQueue& queue = queues[reminders];
  while (queue.count() < reminders)
    queue.append(reminderNumber(int(queue.count())));
  return queue;
}

// A line of the log would be what is measured.
void quiet() {
  QLoggingCategory::setFilterRules(QStringLiteral("tockwise.info=false"));
}

void documentSave(benchmark::State& state) {
  const ReminderQueue& queue = queueOf(int(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(archivedDataDictionary(queue));
  state.counters["bytes"] = double(archivedDataDictionary(queue).size());
}
BENCHMARK(documentSave)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void documentOpen(benchmark::State& state) {
  quiet();
  const QByteArray archive = archivedDataDictionary(queueOf(int(state.range(0))));
  for (auto _ : state) {
    ReminderQueue queue;
    setDataWithDataDictionary(queue, unarchivedDataDictionary(archive, kPads).value());
    benchmark::DoNotOptimize(queue.count());
  }
}
BENCHMARK(documentOpen)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// Each reminder of the document is new.
void documentMerge(benchmark::State& state) {
  quiet();
  const ReminderQueue& live = queueOf(int(state.range(0)));
  ReminderQueue others;
  for (int i = 0; i < int(state.range(0)); ++i)
    others.append(reminderNumber(i));
  const auto dictionary =
      unarchivedDataDictionary(archivedDataDictionary(others), kPads, DictionaryUse::Merge);
  for (auto _ : state) {
    ReminderQueue queue = live;
    benchmark::DoNotOptimize(mergeDataWithDataDictionary(queue, *dictionary));
  }
}
BENCHMARK(documentMerge)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
