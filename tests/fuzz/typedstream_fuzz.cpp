// Older archives: what text they hold can be written as a keyed archive and reads the same.
#include "fuzz_target.h"
#include "store/archive/typedstream.h"

#include <cstdlib>

using namespace tockwise;

void tockwise::fuzz(const QByteArray& bytes) {
  const auto read = readTypedstreamText(bytes);
  if (!read)
    return;
  qsizetype covered = 0;
  for (const TextRun& run : read->text.runs)
    covered += run.length;
  const auto again = unarchiveTextStorage(archiveText(read->text));
  if (covered != read->text.text.size() || !again || again->text != read->text.text)
    std::abort();
}
