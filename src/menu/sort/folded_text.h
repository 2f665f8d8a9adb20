// Comparing names without regard to case: each UTF-16 unit by its simple case folding, so that
// the order is the same in every locale.
#pragma once

#include <QString>

#include <string>
#include <vector>

namespace tockwise {

/// Negative, 0 or positive, as left comes before, with or after right.
int compareFolded(QStringView left, QStringView right);

/// Many texts folded once, for sorting them.
class FoldedTexts {
 public:
  explicit FoldedTexts(const std::vector<QString>& texts);

  /// Whether the text at index left comes before the one at right, as compareFolded has it.
  bool isBefore(quint32 left, quint32 right) const;

 private:
  struct Entry {
    quint64 start = 0; // the first four units, for a quick answer
    size_t begin = 0;
    size_t length = 0;
  };
  std::u16string m_units;
  std::vector<Entry> m_entries;
};

} // namespace tockwise
