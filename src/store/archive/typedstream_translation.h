// Older archives in the layout of keyed ones: value for value, so that one reader decides what
// each means, and what is not edited is written back as it was.
#pragma once

#include "store/archive/typedstream_tree.h"

#include <QStringList>

#include <optional>

namespace tockwise::typedstream {

struct Translation {
  QByteArray archive; // a keyed archive of an attributed string
  QStringList notes;  // what has no place in it, in words for the log
};

/// Nothing when the root of tree is no attributed string. Any one thread.
std::optional<Translation> translateText(const Tree& tree);

} // namespace tockwise::typedstream
