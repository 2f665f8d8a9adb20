#include "richtext/formats/rtf_format_text.h"

#include "richtext/formats/format_fonts.h"
#include "richtext/formats/rtf_units.h"
#include "richtext/formats/rtf_writer.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tockwise {
namespace {

constexpr double kWholeColor = 100000; // of the colour table's extension

QByteArray word(const char* name, double value) {
  return '\\' + QByteArray(name) + QByteArray::number(qint64(std::llround(value)));
}

// A length in points; nothing for 0.
QByteArray length(const char* name, double points) {
  if (!std::isfinite(points) || std::llround(points * kTwipsPerPoint) == 0)
    return {};
  return word(name, std::clamp(points * kTwipsPerPoint, -double(kMostTwips), double(kMostTwips)));
}

QByteArray underlineWord(qint64 kind) {
  const bool isThick = (kind & 0xff) == 2;
  switch (kind & 0x700) {
  case 0x100:
    return isThick ? "\\ulthd" : "\\uld";
  case 0x200:
    return isThick ? "\\ulthdash" : "\\uldash";
  case 0x300:
    return isThick ? "\\ulthdashd" : "\\uldashd";
  case 0x400:
    return isThick ? "\\ulthdashdd" : "\\uldashdd";
  default:
    break;
  }
  if ((kind & 0xff) == 9)
    return "\\uldb";
  if (isThick)
    return "\\ulth";
  return (kind & 0x8000) != 0 ? "\\ulw" : "\\ul";
}

QByteArray alignmentWord(TextAlignment alignment) {
  switch (alignment) {
  case TextAlignment::Left:
    return "\\ql";
  case TextAlignment::Right:
    return "\\qr";
  case TextAlignment::Center:
    return "\\qc";
  case TextAlignment::Justified:
    return "\\qj";
  case TextAlignment::Natural:
    return "\\qnatural";
  }
  return {};
}

QByteArray lineHeightWords(const ParagraphStyle& style) {
  QByteArray words;
  if (style.lineHeightMultiple > 0)
    words += word("sl", style.lineHeightMultiple * kSingleSpaced) + "\\slmult1";
  else if (style.minLineHeight > 0 && style.minLineHeight == style.maxLineHeight)
    words += length("sl", -style.minLineHeight) + "\\slmult0";
  else if (style.minLineHeight > 0)
    words += length("sl", style.minLineHeight) + "\\slmult0";
  // These say it exactly, to those who know them.
  return words + length("slleading", style.lineSpacing) + length("slminimum", style.minLineHeight) +
         length("slmaximum", style.maxLineHeight);
}

QByteArray tabWords(const ParagraphStyle& style) {
  QByteArray words;
  if (style.tabStops) {
    for (const TextTab& tab : *style.tabStops) {
      if (tab.alignment == qint64(TextAlignment::Right))
        words += "\\tqr";
      else if (tab.alignment == qint64(TextAlignment::Center))
        words += "\\tqc";
      words += word("tx", std::clamp(tab.location * kTwipsPerPoint, 0.0, double(kMostTwips)));
    }
  }
  return words + length("pardeftab", style.defaultTabInterval);
}

} // namespace

int RtfFormatText::fontIndex(const QString& name) {
  const auto known = m_fontIndexes.constFind(name);
  if (known != m_fontIndexes.constEnd())
    return *known;
  m_fonts.push_back(name);
  return *m_fontIndexes.insert(name, int(m_fonts.size()) - 1);
}

int RtfFormatText::colorIndex(quint32 argb) {
  const auto known = m_colorIndexes.constFind(argb);
  if (known != m_colorIndexes.constEnd())
    return *known;
  m_colors.push_back(argb);
  return *m_colorIndexes.insert(argb, int(m_colors.size()));
}

QByteArray RtfFormatText::characterWords(const TextAttributes& attributes) {
  QByteArray words = "\\plain";
  if (attributes.font) {
    words += word("f", fontIndex(attributes.font->name));
    if (isBoldFont(attributes.font->name))
      words += "\\b";
    if (isItalicFont(attributes.font->name))
      words += "\\i";
    words += word("fs", std::max(1.0, soundFontSize(attributes.font->size) * 2));
  }
  if (attributes.color && !attributes.color->followsTheme)
    words += word("cf", colorIndex(attributes.color->argb));
  if (attributes.background && !attributes.background->followsTheme) {
    const int index = colorIndex(attributes.background->argb);
    words += word("cb", index) + "\\chshdng0" + word("chcbpat", index);
  }
  if (const qint64 kind = attributes.underline.value_or(0); kind != 0)
    words += underlineWord(kind);
  if (const qint64 kind = attributes.strikethrough.value_or(0); kind != 0)
    words += (kind & 0xff) == 9 ? "\\striked1" : "\\strike";
  if (const qint64 level = attributes.superscript.value_or(0); level != 0)
    words += level > 0 ? "\\super" : "\\sub";
  return words;
}

QByteArray RtfFormatText::paragraphWords(const ParagraphStyle* style) {
  QByteArray words = "\\pard";
  if (!style)
    return words;
  if (style->writingDirection != 0)
    words += style->writingDirection == 2 ? "\\rtlpar" : "\\ltrpar";
  if (style->alignment)
    words += alignmentWord(*style->alignment);
  words += length("li", style->headIndent);
  words += length("fi", style->firstLineHeadIndent - style->headIndent);
  if (style->tailIndent < 0) // one from the left margin would need the width of the page
    words += length("ri", -style->tailIndent);
  words += length("sb", style->paragraphSpacingBefore) + length("sa", style->paragraphSpacing);
  return words + lineHeightWords(*style) + tabWords(*style);
}

QByteArray RtfFormatText::tables() const {
  return fontTable() + colorTable();
}

QByteArray RtfFormatText::fontTable() const {
  if (m_fonts.empty())
    return {};
  QByteArray table = "{\\fonttbl";
  for (size_t i = 0; i < m_fonts.size(); ++i) {
    const QString family = visibleFamily(m_fonts[i]);
    table += "{" + word("f", double(i)) + "\\fnil\\fcharset0 ";
    if (family != m_fonts[i])
      table += "{\\*\\falt " + escapedForRTF(m_fonts[i]) + "}";
    table += escapedForRTF(family) + ";}";
  }
  return table + "}\n";
}

QByteArray RtfFormatText::colorTable() const {
  if (m_colors.empty())
    return {};
  QByteArray table = "{\\colortbl;";
  QByteArray extension = "{\\*\\expandedcolortbl;";
  bool hasAlpha = false;
  for (const quint32 argb : m_colors) {
    const std::array<int, 4> parts{int(argb >> 24), int(argb >> 16 & 0xff), int(argb >> 8 & 0xff),
                                   int(argb & 0xff)};
    const auto whole = [&](int part) { return parts[size_t(part)] / 255.0 * kWholeColor; };
    table += word("red", parts[1]) + word("green", parts[2]) + word("blue", parts[3]) + ';';
    extension += "\\cssrgb" + word("c", whole(1)) + word("c", whole(2)) + word("c", whole(3));
    if (parts[0] != 0xff) {
      extension += word("c", whole(0));
      hasAlpha = true;
    }
    extension += ';';
  }
  return table + "}\n" + (hasAlpha ? extension + "}\n" : QByteArray());
}

} // namespace tockwise
