// Keyed archives: rich text and values, read, written and read again.
#include "fuzz_target.h"
#include "store/archive/keyed_value.h"
#include "store/archive/text_archive.h"

#include <cstdlib>

using namespace tockwise;

void tockwise::fuzz(const QByteArray& bytes) {
  if (const auto value = unarchiveValue(bytes)) {
    const auto again = unarchiveValue(archiveValue(*value));
    if (!again)
      std::abort(); // what was read can be written and read again
  }
  const auto text = unarchiveText(bytes);
  if (!text)
    return;
  qsizetype covered = 0;
  for (const TextRun& run : text->text.runs) {
    if (run.length <= 0)
      std::abort();
    covered += run.length;
  }
  if (covered != text->text.text.size())
    std::abort();
  const auto again = unarchiveText(archiveText(text->text));
  if (!again || again->text.text != text->text.text || !again->notes.isEmpty())
    std::abort();
}
