#include "store/archive/run_codec.h"

#include <limits>
#include <optional>

namespace tockwise {
namespace {

constexpr int kMostNumberBytes = 5; // of a number of 32 bits, seven in each

// Moves at behind the number; nothing when there is no whole one of 32 bits.
std::optional<quint32> readPacked(const QByteArray& bytes, qsizetype& at) {
  quint64 number = 0;
  for (int i = 0; i < kMostNumberBytes && at < bytes.size(); ++i) {
    const auto byte = quint8(bytes[at++]);
    number |= quint64(byte & 0x7F) << (7 * i);
    if (byte < 0x80)
      return number <= std::numeric_limits<quint32>::max() ? std::optional(quint32(number))
                                                           : std::nullopt;
  }
  return std::nullopt;
}

void appendPacked(QByteArray& to, quint32 number) {
  for (; number >= 0x80; number >>= 7)
    to += char(0x80 | (number & 0x7F));
  to += char(number);
}

} // namespace

RunTable decodeRuns(const QByteArray& bytes) {
  RunTable table;
  qsizetype at = 0;
  while (at < bytes.size()) {
    const auto length = readPacked(bytes, at);
    const auto attributes = length ? readPacked(bytes, at) : std::nullopt;
    if (!attributes) {
      table.isCut = true;
      break;
    }
    table.runs.push_back({*length, *attributes});
  }
  return table;
}

QByteArray encodeRuns(const std::vector<RunEntry>& runs) {
  QByteArray bytes;
  for (const RunEntry& run : runs) {
    appendPacked(bytes, run.length);
    appendPacked(bytes, run.attributes);
  }
  return bytes;
}

} // namespace tockwise
