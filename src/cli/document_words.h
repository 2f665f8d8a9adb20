// Documents named on the command line in place of a command. Any thread.
#pragma once

#include "base/result.h"

#include <QStringList>

namespace tockwise {

/// Whether the words name documents to open: the first is no command and no option, and is a file
/// that there is, ends as documents do, or is a URL of the scheme "file".
bool nameDocuments(const QStringList& words);

/// The words as absolute paths; relative ones count from the current folder. NotFound for a file
/// that is not there, Refused for what is no file on this machine: then none is to be opened.
Result<QStringList> documentPaths(const QStringList& words);

} // namespace tockwise
