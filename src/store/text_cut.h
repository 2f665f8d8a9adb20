// Cutting texts for display.
#pragma once

#include <QString>

namespace tockwise {

/// text when it has at most most characters, else its first most characters followed by ending.
/// Characters are UTF-16 units; a surrogate pair at the cut is not split but left out whole.
inline QString cutText(const QString& text, qsizetype most,
                       const QString& ending = QStringLiteral("...")) {
  if (text.size() <= most)
    return text;
  const bool splitsPair = most > 0 && text[most - 1].isHighSurrogate();
  return text.left(splitsPair ? most - 1 : most) + ending;
}

} // namespace tockwise
