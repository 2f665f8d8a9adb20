// Older archives: what text they hold can be written as a keyed archive and reads the same.
#include "store/archive/typedstream.h"

#include <cstdint>
#include <cstdlib>

using namespace tockwise;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto read = readTypedstreamText({reinterpret_cast<const char*>(data), qsizetype(size)});
  if (!read)
    return 0;
  qsizetype covered = 0;
  for (const TextRun& run : read->text.runs)
    covered += run.length;
  const auto again = unarchiveTextStorage(archiveText(read->text));
  if (covered != read->text.text.size() || !again || again->text != read->text.text)
    std::abort();
  return 0;
}
