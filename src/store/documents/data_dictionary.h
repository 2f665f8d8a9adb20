// The data dictionary: the whole queue as one dictionary of sixteen arrays, the form in which it
// travels. Reminders documents and synchronisation hold it as a keyed archive; docs/documents.md
// describes it.
//
// Export, replacing and merging run on the main thread: called on another one, they wait for it. A
// dictionary is checked whole before anything of it reaches the queue, so that a damaged one
// changes nothing.
#pragma once

#include "base/result.h"
#include "store/reminder_queue.h"

#include <QByteArray>
#include <QStringList>

#include <tuple>
#include <vector>

namespace tockwise {

/// The sixteen columns in the order in which the arrays are built and read.
inline constexpr auto kDictionaryFields =
    std::tuple{std::pair{&Columns::importedUIDs, &Reminder::importedUIDs},
               std::pair{&Columns::reminderDateTimeCreated, &Reminder::reminderDateTimeCreated},
               std::pair{&Columns::reminderDateTimeFired, &Reminder::reminderDateTimeFired},
               std::pair{&Columns::reminderDateTimeModified, &Reminder::reminderDateTimeModified},
               std::pair{&Columns::reminderRecent, &Reminder::reminderRecent},
               std::pair{&Columns::reminderUUID, &Reminder::reminderUUID},
               std::pair{&Columns::reminderQueue, &Reminder::reminderQueue},
               std::pair{&Columns::reminderTypes, &Reminder::reminderTypes},
               std::pair{&Columns::reminderIntervals, &Reminder::reminderIntervals},
               std::pair{&Columns::reminderDescriptions, &Reminder::reminderDescriptions},
               std::pair{&Columns::reminderRTFs, &Reminder::reminderRTFs},
               std::pair{&Columns::reminderSendEmail, &Reminder::reminderSendEmail},
               std::pair{&Columns::reminderSendSMS, &Reminder::reminderSendSMS},
               std::pair{&Columns::reminderTasks, &Reminder::reminderTasks},
               std::pair{&Columns::reminderExtras, &Reminder::reminderExtras},
               std::pair{&Columns::reminderOffsets, &Reminder::reminderOffsets}};
static_assert(std::tuple_size_v<decltype(kDictionaryFields)> ==
              std::tuple_size_v<decltype(kFields)>);

/// The sixteen keys, in the order in which the arrays are built and read.
const QStringList& dataDictionaryKeys();

/// A data dictionary that was read and checked: the rows it has, ready for the queue.
struct DataDictionary {
  Columns columns;
  /// Rows whose element of reminderQueue is no date, ascending. In columns it is the distant
  /// future; the queue gets none for them.
  std::vector<qsizetype> rowsWithoutFireDate;
  qsizetype foreignElements = 0; // other elements of a foreign kind, read as the pad value
};

/// What a dictionary is read for decides how many rows it has, and how long its arrays must be.
enum class DictionaryUse {
  Replace, // as many as reminderQueue has elements; no array may be shorter
  Merge    // as many as reminderUUID has; rowsToMerge() tells whether the others reach
};

/// The queue as an archived data dictionary. Any thread.
QByteArray archivedDataDictionary(const ReminderQueue& queue);

/// Reads an archive. Damaged when it is no archive, no data dictionary, when an array is missing or
/// too short, or when it unfolds beyond reason. Any one thread.
Result<DataDictionary> unarchivedDataDictionary(const QByteArray& archive,
                                                const ReminderQueue::Pads& pads,
                                                DictionaryUse use = DictionaryUse::Replace);

/// Replaces the queue by the dictionary's rows, and logs their number. Saves nothing. A dictionary
/// whose arrays differ in length, as one that was read for a merge may, is logged and changes
/// nothing. Any thread.
void setDataWithDataDictionary(ReminderQueue& queue, DataDictionary dictionary);

struct MergeCounts {
  qsizetype merged = 0;
  qsizetype existed = 0;
  friend bool operator==(const MergeCounts&, const MergeCounts&) = default;
};

/// The rows, ascending, whose identifier neither the queue holds nor a row before them. Damaged
/// when an array does not reach such a row. The thread of the queue.
Result<std::vector<qsizetype>> rowsToMerge(const ReminderQueue& queue,
                                           const DataDictionary& dictionary);

/// Appends the rows to be merged, and logs how many they are and how many existed. Saves nothing;
/// with merged above 0 the caller tells that the data changed. Damaged, changing nothing, as above.
/// Any thread.
Result<MergeCounts> mergeDataWithDataDictionary(ReminderQueue& queue,
                                                const DataDictionary& dictionary);

} // namespace tockwise
