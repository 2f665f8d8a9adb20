// HTML: whatever a page holds, what is read of it holds together, and its page reads the same.
#include "fuzz_target.h"
#include "richtext/text_formats.h"

#include <cstdlib>

using namespace tockwise;

void tockwise::fuzz(const QByteArray& bytes) {
  const AttributedText text = fromHTML(QString::fromUtf8(bytes));
  qsizetype sum = 0;
  for (const TextRun& run : text.runs)
    sum += run.length > 0 ? run.length : text.text.size() + 1;
  if (sum != text.text.size())
    std::abort();
  if (fromHTML(toHTML(text)).text != text.text)
    std::abort();
}
