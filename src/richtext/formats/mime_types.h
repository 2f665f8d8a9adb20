// The names of the forms in which a text is on the clipboard.
#pragma once

#include <QString>

namespace tockwise {

/// Our own: a keyed archive of the text.
inline constexpr char16_t kArchiveType[] = u"application/x-tockwise-richtext";
inline constexpr char16_t kRtfdType[] = u"application/rtfd";
inline constexpr char16_t kTextRtfdType[] = u"text/rtfd";
inline constexpr char16_t kRtfType[] = u"application/rtf";
inline constexpr char16_t kTextRtfType[] = u"text/rtf";
inline constexpr char16_t kTextRichtextType[] = u"text/richtext"; // RTF, of some office programs
inline constexpr char16_t kHtmlType[] = u"text/html";
inline constexpr char16_t kPlainType[] = u"text/plain";

} // namespace tockwise
