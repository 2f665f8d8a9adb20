// The file of --rich, read by the command itself.
#pragma once

#include "base/result.h"

#include <QVariantMap>

namespace tockwise {

/// Puts the archived rich text of the file in the place of its path, in the option "rich" where
/// there is one. An error names the file. Needs no window system. Any one thread.
Result<void> readRichOption(QVariantMap& options);

} // namespace tockwise
