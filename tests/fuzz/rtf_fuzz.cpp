// RTF and flat RTFD: what is read holds together, can be written, and reads the same again.
#include "richtext/text_formats.h"

#include <QLoggingCategory>

#include <cstdint>
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

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
  const auto text = bytes.startsWith("rtfd") ? fromRTFD(bytes) : fromRTF(bytes);
  if (!text)
    return 0;
  const bool isWhole = check(*text);
  const auto again = fromRTFD(toRTFD(*text));
  if (!again || (isWhole && again->text != text->text))
    std::abort();
  return 0;
}
