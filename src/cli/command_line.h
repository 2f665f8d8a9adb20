// The words of a command, taken apart.
#pragma once

#include "base/result.h"
#include "cli/command_table.h"

#include <QStringList>
#include <QVariantMap>

namespace tockwise {

struct Invocation {
  const CommandSpec* command = nullptr;
  QStringList arguments;
  /// By their names, but for the three below. Those of add and edit are what
  /// app/reminder_options.h takes; "--no-NAME" is NAME with the value false.
  QVariantMap options;
  bool json = false;
  bool yes = false;
  bool help = false;
};

/// words: the program's arguments, the command first. Options may stand anywhere after the
/// command, as "--name value" or "--name=value"; after "--" everything is an argument. Usage when
/// the words are wrong. Any thread.
Result<Invocation> parseCommandLine(const QStringList& words);

/// The help text of one command, or with null that of the program. Any thread.
QString helpText(const CommandSpec* command);

} // namespace tockwise
