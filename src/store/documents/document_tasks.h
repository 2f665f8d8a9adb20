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

/// Blanks the task of that row; a row that is not there is ignored. Any one thread.
void blankTask(DataDictionary& dictionary, qsizetype row);

// Any thread:

/// Whether a task opens nothing but an address or a media file: its author then chooses no program
/// that would start on this machine.
bool startsNothingHere(const Task& task);

/// What a task does, as a heading: "Runs a script".
QString taskKindText(const Task& task);

/// What a task would do by itself, in one line without control characters: its reminder and its
/// path, each cut where it is long.
QString taskLine(const DocumentTask& task);

} // namespace tockwise
