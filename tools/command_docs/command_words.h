// What may stand at each place of a command, read from the synopses of the command table. Any
// thread.
#pragma once

#include "cli/command_table.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tockwise {

/// A place after the words before it, and what may be written there.
struct WordPlace {
  QStringList before;       // the command and its arguments so far; "*" stands for any word
  QStringList words;        // offered as they are
  QStringList placeholders; // FILE, KEY, ...: what the synopsis names without listing it
  bool repeats = false;     // the same may follow any number of times
};

/// The places of a command's arguments, options left aside, in the order of the synopsis.
/// A synopsis is made of words to be written as they are, PLACEHOLDERS, a|b for one of two words,
/// groups in ( ) and [ ] with alternatives between " | ", and WORD... for repetition; a group that
/// starts with "options" names what the table of options lists.
QList<WordPlace> wordPlaces(const CommandSpec& command);

/// The placeholder that the synopsis writes after an option, empty when it has none.
QString optionPlaceholder(const CommandSpec& command, const OptionSpec& option);

/// The words that are offered for the value of an option, empty when there are none.
QStringList optionValues(const OptionSpec& option);

/// The settings whose values are YES and NO, and all settings.
QStringList booleanSettings();
QStringList allSettings();

} // namespace tockwise
