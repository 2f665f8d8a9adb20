// The password of `prefs set passwordAD -`.
#pragma once

#include "base/result.h"

#include <QStringList>

namespace tockwise {

/// Puts the first line of the standard input in the place of "-", where these are the arguments of
/// setting the password: a word of the command line stands in the list of processes. Usage when
/// there is no line. Waits for whoever writes there. Any one thread.
Result<void> readPasswordOption(QStringList& prefsArguments);

} // namespace tockwise
