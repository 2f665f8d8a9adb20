// The data dictionary: the whole queue as one dictionary of sixteen arrays, the form in which it
// travels. Reminders documents and synchronisation hold it as a keyed archive.
#pragma once

#include "base/result.h"
#include "store/reminder_queue.h"

#include <QByteArray>
#include <QStringList>

#include <memory>

namespace tockwise {

/// The sixteen keys, in the order in which the arrays are built and read.
QStringList dataDictionaryKeys();

/// A data dictionary that was read and checked: the rows it has, ready for the queue.
struct DataDictionary {
  Columns columns;
  qsizetype droppedFireDates = 0; // elements of reminderQueue that were no date
  qsizetype foreignElements = 0;  // other elements of a foreign kind, read as the pad value
};

/// The queue as an archived data dictionary. Any one thread that owns the queue.
QByteArray archivedDataDictionary(const ReminderQueue& queue);

/// Reads an archive. Damaged when it is no archive, no data dictionary, or when an array is
/// shorter than its reminderQueue. Any one thread.
Result<DataDictionary> unarchivedDataDictionary(const QByteArray& archive,
                                                const ReminderQueue::Pads& pads);

/// Replaces the queue by the dictionary's rows, and logs their number. Saves nothing. Main thread.
void setDataWithDataDictionary(ReminderQueue& queue, DataDictionary dictionary);

struct MergeCounts {
  qsizetype merged = 0;
  qsizetype existed = 0;
  friend bool operator==(const MergeCounts&, const MergeCounts&) = default;
};

/// Appends the rows whose identifier the queue does not hold yet, and logs both numbers. Saves
/// nothing; with merged above 0 the caller tells that the data changed. Main thread.
MergeCounts mergeDataWithDataDictionary(ReminderQueue& queue, const DataDictionary& dictionary);

} // namespace tockwise
