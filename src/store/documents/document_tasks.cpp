#include "store/documents/document_tasks.h"

namespace tockwise {

std::vector<DocumentTask> tasksOf(const DataDictionary& dictionary) {
  std::vector<DocumentTask> tasks;
  const Columns& columns = dictionary.columns;
  for (qsizetype row = 0; row < columns.reminderTasks.size(); ++row) {
    const Task& task = *columns.reminderTasks.find(row);
    if (task.blank)
      continue;
    const QString* text = columns.reminderDescriptions.find(row);
    const Date* fires = columns.reminderQueue.find(row);
    tasks.push_back({row, text ? *text : QString(), fires ? *fires : kDistantFuture, task});
  }
  return tasks;
}

void blankTask(DataDictionary& dictionary, qsizetype row) {
  if (dictionary.columns.reminderTasks.holds(row))
    ReminderQueue::valuesOf(dictionary.columns.reminderTasks)[size_t(row)] = Task();
}

} // namespace tockwise
