#include "app/document_commands.h"

#include "base/harmless_text.h"
#include "base/log.h"
#include "store/documents/document_file.h"

#include <QDir>

#include <algorithm>
#include <numeric>

namespace tockwise {
namespace {

constexpr qsizetype kMostLines = 20;

Result<void> checkPath(const QString& path) {
  if (QDir::isAbsolutePath(path))
    return {};
  return Error{Error::Kind::Usage,
               QStringLiteral("the path of a document must start with a slash: \"%1\"")
                   .arg(harmlessLine(path))};
}

Error unsound(const QString& path, const Error& error) {
  return {error.kind, harmlessLine(QStringLiteral("%1 is no sound reminders document: ").arg(path) +
                                   error.message)};
}

// A message of one line, whatever the path in it is made of.
Error harmless(Error error) {
  error.message = harmlessLine(error.message);
  return error;
}

void blankAll(DataDictionary& dictionary) {
  for (const DocumentTask& task : tasksOf(dictionary))
    blankTask(dictionary, task.row);
}

// Of those rows.
void reportTasks(DocumentReport& report, const DataDictionary& dictionary,
                 const std::vector<qsizetype>& rows) {
  for (const DocumentTask& task : tasksOf(dictionary)) {
    if (!std::binary_search(rows.begin(), rows.end(), task.row))
      continue;
    if (++report.taskCount <= kMostLines)
      report.tasks.append(taskLine(task));
  }
}

} // namespace

QVariantMap DocumentReport::toMap() const {
  return {{QStringLiteral("merged"), qlonglong(counts.merged)},
          {QStringLiteral("existed"), qlonglong(counts.existed)},
          {QStringLiteral("tasks"), tasks},
          {QStringLiteral("taskCount"), qlonglong(taskCount)}};
}

Result<DocumentCommands::Tasks> tasksOption(const QVariantMap& options) {
  for (auto option = options.begin(); option != options.end(); ++option) {
    if (option.key() != u"tasks" || option->typeId() != QMetaType::Bool)
      return Error{
          Error::Kind::Usage,
          QStringLiteral("there is no option \"%1\" of this kind").arg(harmlessLine(option.key()))};
  }
  return options.value(QStringLiteral("tasks"), true).toBool() ? DocumentCommands::Tasks::Keep
                                                               : DocumentCommands::Tasks::Blank;
}

DocumentCommands::DocumentCommands(ReminderStore& store, std::function<Result<void>()> onChanged)
    : m_store(store), m_onChanged(std::move(onChanged)) {}

Result<void> DocumentCommands::save(const QString& path) const {
  if (const auto checked = checkPath(path); !checked)
    return checked.error();
  if (const auto written = writeDocument(path, archivedDataDictionary(m_store.queue())); !written)
    return harmless(written.error());
  logLine(QStringLiteral("Saved '%1'").arg(harmlessLine(path)));
  return {};
}

Result<DataDictionary> DocumentCommands::read(const QString& path, DictionaryUse use) const {
  if (const auto checked = checkPath(path); !checked)
    return checked.error();
  const auto archive = readDocument(path);
  if (!archive)
    return harmless(archive.error());
  auto dictionary = unarchivedDataDictionary(*archive, m_store.pads(), use);
  if (!dictionary)
    return unsound(path, dictionary.error());
  return dictionary;
}

Result<void> DocumentCommands::check(const QString& path) const {
  const auto dictionary = read(path, DictionaryUse::Replace);
  return dictionary ? Result<void>() : Result<void>(dictionary.error());
}

Result<DocumentReport> DocumentCommands::open(const QString& path, Tasks tasks) {
  auto dictionary = read(path, DictionaryUse::Replace);
  if (!dictionary)
    return dictionary.error();
  if (tasks == Tasks::Blank)
    blankAll(*dictionary);
  DocumentReport report;
  report.counts.merged = dictionary->columns.reminderUUID.size();
  std::vector<qsizetype> rows(size_t(report.counts.merged));
  std::iota(rows.begin(), rows.end(), 0);
  reportTasks(report, *dictionary, rows);
  setDataWithDataDictionary(m_store.queue(), std::move(dictionary).value());
  m_store.saveDefaults();
  if (const auto finished = m_onChanged(); !finished)
    return finished.error();
  return report;
}

Result<DocumentReport> DocumentCommands::merge(const QString& path, Tasks tasks) {
  auto dictionary = read(path, DictionaryUse::Merge);
  if (!dictionary)
    return dictionary.error();
  if (tasks == Tasks::Blank)
    blankAll(*dictionary);
  const auto rows = rowsToMerge(m_store.queue(), *dictionary);
  const auto counts = mergeDataWithDataDictionary(m_store.queue(), *dictionary);
  if (!rows || !counts)
    return unsound(path, counts.error());
  DocumentReport report;
  report.counts = *counts;
  if (report.counts.merged == 0)
    return report;
  reportTasks(report, *dictionary, *rows);
  m_store.saveDefaults();
  if (const auto finished = m_onChanged(); !finished)
    return finished.error();
  return report;
}

} // namespace tockwise
