// RTF and flat RTFD: what is read holds together, can be written, and reads the same again.
#include "fuzz_target.h"
#include "richtext/text_formats.h"

#include <cstdlib>

using namespace tockwise;

namespace {

// Whether each attached file has contents: one without is written as its name.
bool check(const AttributedText& text) {
  qsizetype sum = 0;
  bool isWhole = true;
  for (const TextRun& run : text.runs) {
    sum += run.length > 0 ? run.length : text.text.size() + 1;
    isWhole =
        isWhole && !(run.attributes.attachment && run.attributes.attachment->contents.isEmpty());
  }
  if (sum != text.text.size())
    std::abort();
  return isWhole;
}

} // namespace

void tockwise::fuzz(const QByteArray& bytes) {
  const auto text = bytes.startsWith("rtfd") ? fromRTFD(bytes) : fromRTF(bytes);
  if (!text)
    return;
  const bool isWhole = check(*text);
  const auto again = fromRTFD(toRTFD(*text));
  if (!again || (isWhole && again->text != text->text))
    std::abort();
}
