#include "menu/rich_text.h"

#include "store/text_cut.h"

namespace tockwise {

qsizetype lengthOf(const RichText& text) {
  qsizetype length = 0;
  for (const RichRun& run : text)
    length += run.text.size();
  return length;
}

RichText cutRichText(const RichText& text, qsizetype most) {
  if (lengthOf(text) <= most)
    return text;
  RichText cut;
  qsizetype left = most;
  for (const RichRun& run : text) {
    if (left <= 0)
      break;
    RichRun kept{cutText(run.text, left, QString()), run.attributes};
    left -= run.text.size();
    if (!kept.text.isEmpty())
      cut.push_back(std::move(kept));
  }
  cut.push_back({QStringLiteral("\u2026"), {}});
  return cut;
}

} // namespace tockwise
