// One command of the command line, from its words to its exit status.
#pragma once

#include "base/result.h"

#include <QStringList>

namespace tockwise {

enum ExitStatus : int {
  kDone = 0,      // done
  kFailed = 1,    // understood, and could not be done; one line on stderr says why
  kWrongWords = 2 // the words are wrong
};

/// Whether the command may have to lay out text itself: it needs a QGuiApplication then, without a
/// display, in place of the QCoreApplication. words: as for runCommand.
bool needsFonts(const QStringList& words);

/// words: the program's arguments without its name, the command first. Returns an ExitStatus. Needs
/// a QCoreApplication. Main thread.
int runCommand(const QStringList& words);

/// Prints the error on stderr in one line; returns the exit status that goes with it. Any thread.
int failCommand(const Error& error);

} // namespace tockwise
