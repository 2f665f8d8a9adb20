// The columns of the queue as property-list arrays; docs/store-format.md describes the elements.
#pragma once

#include "store/plist_reader.h"
#include "store/plist_writer.h"
#include "store/reminder_queue.h"

#include <QStringList>

namespace tockwise {

struct DecodedColumns {
  Columns columns;
  int foreignElements = 0; // elements of a foreign kind, read as the column's pad value
};

/// The sixteen keys, in the order of kFields.
QStringList columnKeys();

/// Reads the columns that the dictionary holds; a missing one is empty. Each foreign element is
/// logged with its key and index. Values of older layouts ("" for an interval or a task,
/// {"nil": "nil"} for an extra) become the blank ones. Main thread.
DecodedColumns decodeColumns(const plist::Reader& reader, plist::Ref dictionary,
                             const ReminderQueue::Pads& pads);

/// Adds key and array of every column.
void encodeColumns(const Columns& columns, plist::Writer& writer,
                   std::vector<plist::Writer::Object>& keys,
                   std::vector<plist::Writer::Object>& values);

} // namespace tockwise
