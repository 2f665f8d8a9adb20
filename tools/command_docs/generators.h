// What is generated from the command table.
#pragma once

#include <QString>

namespace tockwise {

/// A completion for the shell of that name, to be saved where it looks for those of programs.
QString bashCompletion();
QString zshCompletion();
QString fishCompletion();

/// The commands and their options in man(7) macros: the body of a section.
QString manPageCommands();

} // namespace tockwise
