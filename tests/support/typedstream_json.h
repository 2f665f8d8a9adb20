// What an older archive holds, in the JSON that stands beside the samples of archives.
#pragma once

#include "store/archive/typedstream_tree.h"

#include <QString>

namespace tockwise {

/// Indented by one space a level, members in a fixed order. The attributes of attached files are
/// left out: nothing reads them.
QString typedstreamJson(const typedstream::Tree& tree);

/// text without what typedstreamJson() leaves out.
QString comparableTypedstreamJson(const QString& text);

} // namespace tockwise
