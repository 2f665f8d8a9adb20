// The table of runs in an archived attributed string (NSAttributeInfo): pairs of a length in UTF-16
// units and an index of an attribute dictionary, each as a variable-length number.
#pragma once

#include <QByteArray>

#include <vector>

namespace tockwise {

struct RunEntry {
  quint32 length = 0;     // UTF-16 units
  quint32 attributes = 0; // index of the dictionary
  friend bool operator==(const RunEntry&, const RunEntry&) = default;
};

struct RunTable {
  std::vector<RunEntry> runs;
  /// The bytes ended within a number, or a number has more than 32 bits: what is before it stands.
  bool isCut = false;
};

RunTable decodeRuns(const QByteArray& bytes);
QByteArray encodeRuns(const std::vector<RunEntry>& runs);

} // namespace tockwise
