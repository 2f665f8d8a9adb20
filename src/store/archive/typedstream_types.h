// The type codes of older archives: what the values of a group are.
#pragma once

#include <QByteArrayView>

#include <optional>
#include <vector>

namespace tockwise::typedstream {

struct Type {
  /// A code of one letter; '[' for an array of count times parts[0], '{' for a structure of parts.
  char code = 0;
  quint64 count = 0;
  std::vector<Type> parts;
};

/// The types that text names, one after the other; nothing when it is empty, names an unknown
/// code, is not balanced, or is nested deeper than 16. Any one thread.
std::optional<std::vector<Type>> parseTypes(QByteArrayView text);

} // namespace tockwise::typedstream
