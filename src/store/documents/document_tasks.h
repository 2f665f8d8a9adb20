// What the reminders of a document would run or open by themselves.
#pragma once

#include "store/documents/data_dictionary.h"

#include <vector>

namespace tockwise {

struct DocumentTask {
  qsizetype row = 0; // in the dictionary
  QString reminder;  // its plain text
  Date fires;        // the distant future when the document has no date for it
  Task task;
};

/// The rows whose task runs a script or an application, or opens a file or an address when they
/// fire, in their order. Any one thread.
std::vector<DocumentTask> tasksOf(const DataDictionary& dictionary);

/// Blanks the task of that row; a row that is not there is ignored.
void blankTask(DataDictionary& dictionary, qsizetype row);

} // namespace tockwise
