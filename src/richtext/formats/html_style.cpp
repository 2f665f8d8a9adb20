#include "richtext/formats/html_style.h"

#include "richtext/formats/css_values.h"
#include "richtext/formats/format_fonts.h"

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

constexpr qsizetype kLongestStyle = 16384; // characters that are looked at

using Words = QList<QStringView>;

Words wordsOf(QStringView value) {
  return value.split(u' ', Qt::SkipEmptyParts);
}

void applyDecoration(QStringView value, HtmlStyle& style) {
  for (const QStringView word : wordsOf(value)) {
    if (word == u"underline") {
      style.underline = std::max<qint64>(style.underline, 1);
      style.drawsUnderline = true;
    } else if (word == u"line-through") {
      style.strikethrough = std::max<qint64>(style.strikethrough, 1);
      style.drawsStrikethrough = true;
    } else if (word == u"none") {
      style.underline = style.strikethrough = 0;
    }
  }
}

// A kind of line holds for the lines that the element itself draws.
void applyDecorationKind(qint64 kind, HtmlStyle& style) {
  constexpr qint64 kLines = 0xff;
  constexpr qint64 kPatterns = 0x700;
  const qint64 others = ~(kind > kLines ? kPatterns : kLines);
  if (style.drawsUnderline)
    style.underline = (style.underline & others) | kind;
  if (style.drawsStrikethrough)
    style.strikethrough = (style.strikethrough & others) | kind;
}

void applyDecorationStyle(QStringView value, HtmlStyle& style) {
  if (value == u"double")
    applyDecorationKind(9, style);
  else if (value == u"dotted")
    applyDecorationKind(0x100, style);
  else if (value == u"dashed")
    applyDecorationKind(0x200, style);
}

void applyThickness(QStringView value, HtmlStyle& style) {
  if (htmlLength(value, style.sizeOrPlain()).value_or(0) >= 1.5)
    applyDecorationKind(2, style);
}

void applyAlignment(QStringView value, HtmlStyle& style) {
  if (value == u"left")
    style.alignment = TextAlignment::Left;
  else if (value == u"right" || value == u"end")
    style.alignment = TextAlignment::Right;
  else if (value == u"center")
    style.alignment = TextAlignment::Center;
  else if (value == u"justify")
    style.alignment = TextAlignment::Justified;
  else if (value == u"start")
    style.alignment = TextAlignment::Natural;
}

// One to four lengths: top, right, bottom, left.
void applyMargin(QStringView value, HtmlStyle& style) {
  const Words words = wordsOf(value);
  if (words.isEmpty() || words.size() > 4)
    return;
  static constexpr std::array<std::array<int, 4>, 4> kWhich{
      {{0, 0, 0, 0}, {0, 1, 0, 1}, {0, 1, 2, 1}, {0, 1, 2, 3}}};
  const auto& which = kWhich[size_t(words.size()) - 1];
  const auto side = [&](size_t at) {
    return htmlLength(words[which[at]], style.sizeOrPlain()).value_or(0);
  };
  style.spaceBefore = std::max(0.0, side(0));
  style.rightIndent += side(1);
  style.spaceAfter = std::max(0.0, side(2));
  style.leftIndent += side(3);
}

void applyLineHeight(QStringView value, HtmlStyle& style) {
  bool isNumber = false;
  const double multiple = value.toDouble(&isNumber);
  style.lineHeightMultiple = style.minLineHeight = style.maxLineHeight = 0;
  if (isNumber && multiple > 0 && multiple <= 10)
    style.lineHeightMultiple = multiple == 1 ? 0 : multiple;
  else if (value.endsWith(u'%'))
    style.lineHeightMultiple = htmlLength(value, 1).value_or(0);
  else if (const auto height = htmlLength(value, style.sizeOrPlain()); height && *height > 0)
    style.minLineHeight = style.maxLineHeight = *height;
}

void applyLineHeightRule(QStringView value, HtmlStyle& style) {
  if (value == u"at-least")
    style.maxLineHeight = 0;
}

void applyTabStops(QStringView value, HtmlStyle& style) {
  constexpr size_t kMostTabs = 32;
  std::vector<TextTab> tabs;
  TextAlignment alignment = TextAlignment::Left;
  for (const QStringView word : wordsOf(value)) {
    if (word == u"right" || word == u"center") {
      alignment = word == u"right" ? TextAlignment::Right : TextAlignment::Center;
    } else if (const auto at = htmlLength(word, style.sizeOrPlain());
               at && *at >= 0 && tabs.size() < kMostTabs) {
      tabs.push_back({*at, qint64(alignment), {}});
      alignment = TextAlignment::Left;
    }
  }
  if (!tabs.empty())
    style.tabStops = std::move(tabs);
}

void applySpaces(QStringView value, HtmlStyle& style) {
  if (value.startsWith(u"pre-line"))
    style.spaces = HtmlSpaces::CollapseButLines;
  else if (value.startsWith(u"pre") || value == u"break-spaces")
    style.spaces = HtmlSpaces::Keep;
  else
    style.spaces = HtmlSpaces::Collapse;
}

void applyVerticalAlign(QStringView value, HtmlStyle& style) {
  if (value == u"super" || value == u"sub")
    style.superscript = value == u"super" ? 1 : -1;
  else if (value == u"baseline")
    style.superscript = 0;
}

void applyBackground(QStringView value, HtmlStyle& style) {
  if (value == u"transparent" || value == u"none") {
    style.background.reset();
    return;
  }
  if (const auto whole = htmlColor(value)) {
    style.background = (*whole >> 24) == 0 ? std::nullopt : whole;
    return;
  }
  for (const QStringView word : wordsOf(value)) {
    if (const auto color = htmlColor(word)) {
      style.background = color;
      return;
    }
  }
}

double lengthOr0(QStringView value, const HtmlStyle& style) {
  return htmlLength(value, style.sizeOrPlain()).value_or(0);
}

struct Property {
  const char16_t* name;
  void (*apply)(QStringView value, HtmlStyle& style);
};

using V = QStringView;
using S = HtmlStyle;
constexpr Property kProperties[] = {
    {u"font-family", [](V v, S& s) { s.families = htmlFamilies(v.toString()); }},
    {u"font-size", [](V v, S& s) { s.size = cssFontSize(v, s.sizeOrPlain()).value_or(s.size); }},
    {u"font-weight", [](V v, S& s) { s.weight = cssFontWeight(v, s.weight); }},
    {u"font-style", [](V v, S& s) { s.italic = v == u"italic" || v.startsWith(u"oblique"); }},
    {u"font", [](V v, S& s) { applyFontShorthand(v, s); }},
    {u"color", [](V v, S& s) { s.color = htmlColor(v); }},
    {u"background-color", applyBackground},
    {u"background", applyBackground},
    {u"text-decoration", applyDecoration},
    {u"text-decoration-line", applyDecoration},
    {u"text-decoration-style", applyDecorationStyle},
    {u"text-decoration-thickness", applyThickness},
    {u"vertical-align", applyVerticalAlign},
    {u"white-space", applySpaces},
    {u"display", [](V v, S& s) { s.isHidden |= v == u"none"; }},
    {u"visibility", [](V v, S& s) { s.isHidden |= v == u"hidden" || v == u"collapse"; }},
    {u"mso-hide", [](V v, S& s) { s.isHidden |= v == u"all"; }},
    {u"text-align", applyAlignment},
    {u"text-indent", [](V v, S& s) { s.textIndent = lengthOr0(v, s); }},
    {u"margin", applyMargin},
    {u"margin-left", [](V v, S& s) { s.leftIndent += lengthOr0(v, s); }},
    {u"margin-right", [](V v, S& s) { s.rightIndent += lengthOr0(v, s); }},
    {u"margin-top", [](V v, S& s) { s.spaceBefore = std::max(0.0, lengthOr0(v, s)); }},
    {u"margin-bottom", [](V v, S& s) { s.spaceAfter = std::max(0.0, lengthOr0(v, s)); }},
    {u"line-height", applyLineHeight},
    {u"mso-line-height-rule", applyLineHeightRule},
    {u"tab-stops", applyTabStops},
    {u"tab-size", [](V v, S& s) { s.tabInterval = std::max(0.0, lengthOr0(v, s)); }},
    {u"direction", [](V v, S& s) { s.writingDirection = v == u"rtl" ? 2 : 1; }},
};

void applyDeclaration(QStringView declaration, HtmlStyle& style) {
  const qsizetype colon = declaration.indexOf(u':');
  if (colon < 0)
    return;
  const QString name = declaration.left(colon).trimmed().toString().toLower();
  const auto* known =
      std::find_if(std::begin(kProperties), std::end(kProperties),
                   [&](const Property& property) { return name == QStringView(property.name); });
  if (known == std::end(kProperties))
    return;
  QString value = declaration.mid(colon + 1).toString();
  value.remove(QStringLiteral("!important"), Qt::CaseInsensitive);
  value = value.simplified();
  const bool keepsCase = name.startsWith(u"font"); // the names of fonts
  known->apply(keepsCase ? value : value.toLower(), style);
}

} // namespace

bool HtmlStyle::hasFont() const {
  constexpr int kNormal = 400;
  return !families.isEmpty() || size > 0 || (weight != 0 && weight != kNormal) ||
         italic.value_or(false);
}

double HtmlStyle::sizeOrPlain() const {
  return size > 0 ? size : kPlainFontSize;
}

void applyStyleText(const QString& declarations, HtmlStyle& style) {
  const QStringView text = QStringView(declarations).left(kLongestStyle);
  qsizetype start = 0;
  QChar quote; // within quotes and brackets a semicolon separates nothing
  int depth = 0;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const QChar character = text[at];
    if (!quote.isNull()) {
      if (character == quote)
        quote = QChar();
    } else if (character == u'"' || character == u'\'') {
      quote = character;
    } else if (character == u'(') {
      ++depth;
    } else if (character == u')') {
      depth = std::max(0, depth - 1);
    } else if (character == u';' && depth == 0) {
      applyDeclaration(text.mid(start, at - start), style);
      start = at + 1;
    }
  }
  applyDeclaration(text.mid(start), style);
}

} // namespace tockwise
