// HTML: whatever a page holds, what is read of it holds together, and its page reads the same.
#include "richtext/text_formats.h"

#include <QLoggingCategory>

#include <cstdint>
#include <cstdlib>

using namespace tockwise;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const AttributedText text =
      fromHTML(QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size)));
  qsizetype sum = 0;
  for (const TextRun& run : text.runs)
    sum += run.length > 0 ? run.length : text.text.size() + 1;
  if (sum != text.text.size())
    std::abort();
  if (fromHTML(toHTML(text)).text != text.text)
    std::abort();
  return 0;
}
