// Keyed archives: rich text and values, read, written and read again.
#include "store/archive/keyed_value.h"
#include "store/archive/text_archive.h"

#include <QLoggingCategory>

#include <cstdint>
#include <cstdlib>

using namespace tockwise;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
  if (const auto value = unarchiveValue(bytes)) {
    const auto again = unarchiveValue(archiveValue(*value));
    if (!again)
      std::abort(); // what was read can be written and read again
  }
  const auto text = unarchiveText(bytes);
  if (!text)
    return 0;
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
  return 0;
}
