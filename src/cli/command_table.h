// The commands of the command line: names, words and help. Any thread.
#pragma once

#include <QStringView>

#include <span>

namespace tockwise {

struct OptionSpec {
  const char16_t* name; // without the leading dashes
  bool takesValue;
  const char16_t* help;
  const char16_t* values = nullptr; // that completions offer, with spaces between them
};

struct CommandSpec {
  const char16_t* name;
  const char16_t* synopsis; // what follows the name
  const char16_t* help;     // one line
  int fewestArguments;
  int mostArguments; // -1: any number
  std::span<const OptionSpec> options;
  const char16_t* insteadOfArgument = nullptr; // an option that takes the place of one argument
};

/// Every command, in the order of the help.
std::span<const CommandSpec> commandTable();
/// The command of that name, or null.
const CommandSpec* findCommand(QStringView name);

} // namespace tockwise
