// Which program runs a script file.
#pragma once

#include "base/result.h"

#include <QString>
#include <QStringList>

namespace tockwise {

struct ScriptCommand {
  QString program;
  QStringList arguments;
};

/// An executable file is run itself: the system heeds its "#!" line. One that is not executable is
/// given to the interpreter of its "#!" line (with that line's one argument), and one without such
/// a line to /bin/sh. No text ever becomes a shell's command line. A relative path counts from
/// HOME. NotFound where the file or its interpreter is not there, Refused where it can't be read or
/// is no file. Reads the file's beginning. Any thread.
Result<ScriptCommand> commandOfScript(const QString& path);

} // namespace tockwise
