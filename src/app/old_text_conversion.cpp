#include "app/old_text_conversion.h"

#include "richtext/picture_scaling.h"
#include "store/archive/old_rich_text.h"

namespace tockwise {

OldTextConversion oldTextConversion() {
  return [](const Value& rtfs) {
    return convertOldRichText(rtfs, [](AttributedText& text) { return scaleAttachments(text); });
  };
}

} // namespace tockwise
