#include "richtext/formats/html_elements.h"

#include "richtext/formats/css_values.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace tockwise {
namespace {

constexpr double kListIndent = 36;   // points of each level
constexpr double kMarkerIndent = 11; // of the marker within its level
constexpr double kQuoteIndent = 30;  // points
constexpr std::array<double, 6> kHeadingSizes{24, 18, 14, 12, 10, 8};
constexpr std::array<double, 7> kNumberedSizes{7.5, 10, 12, 13.5, 18, 24, 36}; // of <font size>

using Kind = HtmlElementKind;

QHash<QString, Kind> elementKinds() {
  QHash<QString, Kind> kinds;
  const auto add = [&](Kind kind, const char* names) {
    for (const QByteArray& name : QByteArray(names).split(' '))
      kinds.insert(QString::fromLatin1(name), kind);
  };
  add(Kind::Block, "address article aside blockquote body center dd details dialog dir div dl dt "
                   "fieldset figcaption figure footer form h1 h2 h3 h4 h5 h6 header hgroup html li "
                   "main menu nav ol p pre section summary table tbody tfoot thead caption ul "
                   "listing plaintext xmp");
  add(Kind::Row, "tr");
  add(Kind::Cell, "td th");
  add(Kind::Void, "area base basefont bgsound br col embed frame hr img input link meta param "
                  "source track wbr");
  add(Kind::Skipped, "applet audio canvas datalist head iframe math noembed noframes noscript "
                     "object optgroup option script select style svg template textarea title "
                     "video");
  return kinds;
}

void applyList(const HtmlToken& tag, HtmlStyle& style) {
  constexpr qsizetype kDeepest = 20;
  if (style.lists.size() >= kDeepest)
    return;
  const QString type = tag.attribute(u"type");
  if (tag.name == u"ol") {
    if (type == u"a")
      style.lists += QStringLiteral("{lower-alpha}.");
    else if (type == u"A")
      style.lists += QStringLiteral("{upper-alpha}.");
    else if (type == u"i")
      style.lists += QStringLiteral("{lower-roman}.");
    else if (type == u"I")
      style.lists += QStringLiteral("{upper-roman}.");
    else
      style.lists += QStringLiteral("{decimal}.");
  } else if (type == u"circle" || type == u"square") {
    style.lists += u'{' + type + u'}';
  } else {
    style.lists += QStringLiteral("{disc}");
  }
  const double indent = kListIndent * double(style.lists.size());
  style.leftIndent = indent;
  style.textIndent = -indent;
  style.tabStops =
      std::vector<TextTab>{{indent - kListIndent + kMarkerIndent, 0, {}}, {indent, 0, {}}};
}

void applyFontTag(const HtmlToken& tag, HtmlStyle& style) {
  if (const QString face = tag.attribute(u"face"); !face.isEmpty())
    style.families = htmlFamilies(face);
  bool valid = false;
  const QString text = tag.attribute(u"size");
  int size = text.toInt(&valid);
  if (text.startsWith(u'+') || text.startsWith(u'-'))
    size += 3;
  if (valid)
    style.size = kNumberedSizes[size_t(std::clamp(size, 1, 7) - 1)];
  if (const auto color = htmlColor(tag.attribute(u"color")))
    style.color = color;
}

void applyBlock(const HtmlToken& tag, HtmlStyle& style) {
  const QString& name = tag.name;
  style.spaceBefore = style.spaceAfter = 0;
  style.background.reset(); // of a whole block: not of its characters
  if (name.size() == 2 && name[0] == u'h' && name[1] >= u'1' && name[1] <= u'6') {
    style.size = kHeadingSizes[size_t(name[1].unicode() - u'1')];
    style.weight = 700;
    style.spaceAfter = style.size / 2;
  } else if (name == u"p") {
    style.spaceAfter = style.sizeOrPlain();
  } else if (name == u"center") {
    style.alignment = TextAlignment::Center;
  } else if (name == u"blockquote" || name == u"dd") {
    style.leftIndent += kQuoteIndent;
  } else if (name == u"pre" || name == u"listing" || name == u"xmp" || name == u"plaintext") {
    style.families = {QStringLiteral("monospace")};
    style.spaces = HtmlSpaces::Keep;
  } else if (name == u"ul" || name == u"ol" || name == u"dir" || name == u"menu") {
    applyList(tag, style);
  } else if (name == u"th") {
    style.weight = 700;
  }
  if (const QString align = tag.attribute(u"align"); !align.isEmpty())
    applyStyleText(QStringLiteral("text-align:") + align.left(16).remove(u';'), style);
}

void applyInline(const HtmlToken& tag, HtmlStyle& style) {
  const QString& name = tag.name;
  style.drawsUnderline = name == u"u" || name == u"ins";
  style.drawsStrikethrough = name == u"s" || name == u"strike" || name == u"del";
  if (style.drawsUnderline)
    style.underline = 1;
  if (style.drawsStrikethrough)
    style.strikethrough = 1;
  if (name == u"b" || name == u"strong")
    style.weight = 700;
  else if (name == u"i" || name == u"em" || name == u"cite" || name == u"var" || name == u"dfn")
    style.italic = true;
  else if (name == u"sup" || name == u"sub")
    style.superscript = name == u"sup" ? 1 : -1;
  else if (name == u"code" || name == u"tt" || name == u"kbd" || name == u"samp")
    style.families = {QStringLiteral("monospace")};
  else if (name == u"mark")
    style.background = 0xffffff00;
  else if (name == u"small" || name == u"big")
    style.size = style.sizeOrPlain() * (name == u"small" ? 1 / 1.2 : 1.2);
  else if (name == u"font")
    applyFontTag(tag, style);
  else if (name == u"a" && !tag.rawAttribute(u"href").isEmpty())
    style.link = tag.attribute(u"href").trimmed();
}

QString romanNumber(int number) {
  static constexpr std::pair<int, const char16_t*> kSteps[] = {
      {1000, u"m"}, {900, u"cm"}, {500, u"d"}, {400, u"cd"}, {100, u"c"}, {90, u"xc"}, {50, u"l"},
      {40, u"xl"},  {10, u"x"},   {9, u"ix"},  {5, u"v"},    {4, u"iv"},  {1, u"i"}};
  QString text;
  for (const auto& [value, letters] : kSteps) {
    for (; number >= value; number -= value)
      text += QStringView(letters);
  }
  return text;
}

QString letters(int number) {
  QString text;
  for (; number > 0; number = (number - 1) / 26)
    text.prepend(QChar(char16_t(u'a' + (number - 1) % 26)));
  return text;
}

} // namespace

HtmlElementKind htmlElementKind(const QString& name) {
  static const QHash<QString, Kind> kinds = elementKinds();
  return kinds.value(name, Kind::Inline);
}

bool htmlElementEnds(const QString& open, const QString& next) {
  if (open == u"head") {
    static const QStringView kInHead[] = {u"title",    u"style",    u"script",
                                          u"noscript", u"template", u"object"};
    return std::find(std::begin(kInHead), std::end(kInHead), next) == std::end(kInHead);
  }
  if (open == u"p") {
    const Kind kind = htmlElementKind(next);
    return kind == Kind::Block || kind == Kind::Row || kind == Kind::Cell;
  }
  if (open == u"li")
    return next == u"li";
  if (open == u"td" || open == u"th")
    return next == u"td" || next == u"th" || next == u"tr";
  if (open == u"dt" || open == u"dd")
    return next == u"dt" || next == u"dd";
  return open == u"tr" && next == u"tr";
}

bool htmlElementEncloses(const QString& name) {
  return name == u"table" || name == u"ul" || name == u"ol" || name == u"td" || name == u"th";
}

void applyHtmlElement(const HtmlToken& tag, HtmlStyle& style) {
  const Kind kind = htmlElementKind(tag.name);
  if (kind == Kind::Skipped)
    style.isHidden = true;
  if (kind == Kind::Block || kind == Kind::Cell || kind == Kind::Row)
    applyBlock(tag, style);
  else
    applyInline(tag, style);
  const QString direction = tag.attribute(u"dir").toLower();
  if (direction == u"rtl" || direction == u"ltr")
    style.writingDirection = direction == u"rtl" ? 2 : 1;
  const double left = style.leftIndent;
  if (const QString text = tag.attribute(u"style"); !text.isEmpty())
    applyStyleText(text, style);
  if (!style.lists.isEmpty() && kind == Kind::Block) // what hangs the marker stays as it is
    style.leftIndent = left;
  if (kind == Kind::Block)
    style.background.reset();
}

QString htmlListMarker(const QStringList& lists, int number) {
  const QString format = lists.isEmpty() ? QString() : lists.back();
  const qsizetype open = format.indexOf(u'{');
  const qsizetype close = format.indexOf(u'}');
  const QString kind = close > open ? format.mid(open + 1, close - open - 1) : QString();
  constexpr int kLargestRoman = 3999;
  QString text;
  if (kind == u"decimal")
    text = QString::number(number);
  else if (kind.endsWith(u"-alpha"))
    text = letters(number);
  else if (kind.endsWith(u"-roman"))
    text = number > kLargestRoman ? QString::number(number) : romanNumber(number);
  else if (kind == u"circle")
    text = QString(QChar(0x25e6));
  else if (kind == u"square")
    text = QString(QChar(0x25aa));
  else
    text = QString(QChar(0x2022));
  if (kind.startsWith(u"upper"))
    text = text.toUpper();
  return format.left(std::max<qsizetype>(open, 0)) + text + format.mid(close + 1);
}

} // namespace tockwise
