// The commands on reminders documents, carried out on a store.
#pragma once

#include "base/result.h"
#include "store/documents/document_tasks.h"
#include "store/reminder_store.h"

#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace tockwise {

/// What a document brought along.
struct DocumentReport {
  MergeCounts counts; // of an opened document all are merged
  /// A line for each task that will run or open something by itself, the first ones only.
  QStringList tasks;
  qsizetype taskCount = 0; // of all

  /// {"merged", "existed", "tasks", "taskCount"}; docs/dbus.md describes it.
  QVariantMap toMap() const;
};

/// Errors of kind Usage mean that the words are wrong; all others that the request was understood,
/// could not be done, and changed nothing, unless the change itself could not be saved. Paths are
/// absolute. Main thread.
class DocumentCommands {
 public:
  /// Tasks: what becomes of the tasks that a document brings.
  enum class Tasks { Keep, Blank };

  /// onChanged: called after the queue was changed and saved; tells whether that succeeded.
  DocumentCommands(ReminderStore& store, std::function<Result<void>()> onChanged);

  /// Writes the queue as a document; a file that is there is replaced.
  Result<void> save(const QString& path) const;
  /// Replaces the queue by the document.
  Result<DocumentReport> open(const QString& path, Tasks tasks);
  /// Adds the reminders of the document whose identifier the queue does not hold.
  Result<DocumentReport> merge(const QString& path, Tasks tasks);
  /// Whether the document could be opened; changes nothing.
  Result<void> check(const QString& path) const;

 private:
  Result<DataDictionary> read(const QString& path, DictionaryUse use) const;

  ReminderStore& m_store;
  std::function<Result<void>()> m_onChanged;
};

/// The tasks that the options of a request want: {"tasks": false} blanks them. Usage for any other
/// option.
Result<DocumentCommands::Tasks> tasksOption(const QVariantMap& options);

} // namespace tockwise
