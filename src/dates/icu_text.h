// Texts on their way to ICU and back.
#pragma once

#include <QString>

#include <unicode/unistr.h>

namespace tockwise {

inline icu::UnicodeString toIcu(QStringView text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), int32_t(text.size())};
}

inline QString fromIcu(const icu::UnicodeString& text) {
  return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace tockwise
