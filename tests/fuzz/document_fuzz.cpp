// Reminders documents: opened, merged, saved and opened again.
#include "fuzz_target.h"
#include "store/documents/document_tasks.h"
#include "support/same_columns.h"

#include <cstdlib>

using namespace tockwise;

namespace {

constexpr ReminderQueue::Pads kPads{{790000000}, false, true};

// What was opened can be saved, and opened again as it was.
void checkOpening(DataDictionary dictionary) {
  for (const DocumentTask& task : tasksOf(dictionary))
    blankTask(dictionary, task.row);
  if (!tasksOf(dictionary).empty())
    std::abort();
  const bool isEven = dictionary.rowsWithoutFireDate.empty();
  ReminderQueue queue;
  setDataWithDataDictionary(queue, std::move(dictionary));
  if (!isEven)
    return; // its arrays need not be of one length any more
  const auto again = unarchivedDataDictionary(archivedDataDictionary(queue), kPads);
  if (!again || again->foreignElements != 0)
    std::abort();
  ReminderQueue copy;
  setDataWithDataDictionary(copy, *again);
  const auto third = unarchivedDataDictionary(archivedDataDictionary(copy), kPads);
  if (!third || !sameColumns(third->columns, copy.columns()))
    std::abort();
}

// A second merge finds everything there.
void checkMerging(const DataDictionary& dictionary) {
  ReminderQueue queue;
  const auto counts = mergeDataWithDataDictionary(queue, dictionary);
  if (!counts) {
    if (!queue.isEmpty())
      std::abort();
    return;
  }
  const quint64 revision = queue.revision();
  const auto again = mergeDataWithDataDictionary(queue, dictionary);
  if (!again || again->merged != 0 || again->existed != counts->merged + counts->existed ||
      queue.revision() != revision)
    std::abort();
}

} // namespace

void tockwise::fuzz(const QByteArray& bytes) {
  if (auto dictionary = unarchivedDataDictionary(bytes, kPads))
    checkOpening(std::move(dictionary).value());
  if (const auto dictionary = unarchivedDataDictionary(bytes, kPads, DictionaryUse::Merge))
    checkMerging(*dictionary);
}
