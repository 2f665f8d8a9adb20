#include "store/documents/document_tasks.h"

#include "base/harmless_text.h"
#include "store/text_cut.h"

#include <algorithm>
#include <iterator>

namespace tockwise {
namespace {

constexpr qsizetype kMostOfText = 50;  // characters
constexpr qsizetype kMostOfPath = 200; // likewise

struct Kind {
  qint64 type;
  const char16_t* heading;
  const char16_t* clause; // with a place for the path
};

constexpr Kind kKinds[] = {
    {Task::WebAddress, u"Opens a web address", u"opens the address %1"},
    {Task::Media, u"Plays a media file", u"plays %1"},
    {Task::Document, u"Opens a document", u"opens %1"},
    {Task::Application, u"Starts an application", u"starts the application %1"},
    {Task::Script, u"Runs a script", u"runs the script %1"},
};

const Kind* kindOf(const Task& task) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const Kind& kind) { return kind.type == task.type; });
  return found == std::end(kKinds) ? nullptr : found;
}

} // namespace

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

bool startsNothingHere(const Task& task) {
  return task.type == Task::WebAddress || task.type == Task::Media;
}

QString taskKindText(const Task& task) {
  const Kind* kind = kindOf(task);
  return kind ? QString::fromUtf16(kind->heading)
              : QStringLiteral("Unknown kind %1").arg(task.type);
}

QString taskLine(const DocumentTask& task) {
  const Kind* kind = kindOf(task.task);
  const QString clause =
      kind ? QString::fromUtf16(kind->clause) : QStringLiteral("has a task of an unknown kind: %1");
  const QString reminder = cutText(harmlessLine(task.reminder.simplified()), kMostOfText);
  // The reminder is joined, not filled in: it may hold what looks like a place to fill.
  return u'"' + reminder + QStringLiteral("\" ") +
         clause.arg(cutText(harmlessLine(task.task.path), kMostOfPath));
}

} // namespace tockwise
