// What is generated from the command table. Any thread.
#pragma once

#include <QString>

namespace tockwise {

/// A completion for each shell, to be saved where it looks for those of programs.
QString bashCompletion();
QString zshCompletion();
QString fishCompletion();

/// The commands and their options in man(7) macros: the body of a section.
QString manPageCommands();

} // namespace tockwise
