#include "richtext/default_font.h"

#include "richtext/text_fonts.h"

#include <algorithm>

namespace tockwise {

bool hasFont(const AttributedText& text) {
  return std::any_of(text.runs.begin(), text.runs.end(),
                     [](const TextRun& run) { return run.attributes.font.has_value(); });
}

void stateDefaultFont(AttributedText& text, double size) {
  if (!hasFont(text))
    return;
  for (TextRun& run : text.runs) {
    if (!run.attributes.font)
      run.attributes.font = TextFont{kDefaultFontName.toString(), size, {}};
  }
  text.joinEqualRuns();
}

} // namespace tockwise
