#include "richtext/formats/text_limits.h"

namespace tockwise {

void appendLimited(AttributedText& text, const QString& more, const TextAttributes& attributes) {
  if (text.runs.size() < kMostRuns) {
    text.append(more, attributes);
  } else if (!attributes.attachment) {
    TextAttributes last = text.runs.back().attributes;
    last.attachment.reset();
    text.append(more, last);
  }
}

} // namespace tockwise
