#include "store/archive/attributed_text.h"

#include <algorithm>

namespace tockwise {
namespace {

// Two neighbouring attachments stay two even if they are equal.
bool continues(const TextRun& run, const TextAttributes& attributes) {
  return !attributes.attachment && run.attributes == attributes;
}

} // namespace

void AttributedText::append(const QString& more, const TextAttributes& attributes) {
  if (more.isEmpty())
    return;
  text += more;
  if (!runs.empty() && continues(runs.back(), attributes))
    runs.back().length += more.size();
  else
    runs.push_back({more.size(), attributes});
}

void AttributedText::joinEqualRuns() {
  auto kept = runs.begin();
  for (auto run = runs.begin(); run != runs.end(); ++run) {
    if (run->length <= 0)
      continue;
    if (kept != runs.begin() && continues(*std::prev(kept), run->attributes)) {
      std::prev(kept)->length += run->length;
      continue;
    }
    if (kept != run)
      *kept = std::move(*run);
    ++kept;
  }
  runs.erase(kept, runs.end());
}

} // namespace tockwise
