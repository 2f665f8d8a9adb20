#include "richtext/formats/html_text.h"

#include "richtext/formats/format_fonts.h"
#include "richtext/formats/links.h"
#include "richtext/formats/text_limits.h"
#include "richtext/text_fonts.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tockwise {
namespace {

constexpr quint32 kBlack = 0xff000000;
constexpr quint32 kWhite = 0xffffffff;

bool isCollapsible(QChar character) {
  return character == u' ' || character == u'\n' || character == u'\t' || character == u'\r' ||
         character == u'\f';
}

std::optional<ParagraphStyle> paragraphOf(const HtmlStyle& style) {
  ParagraphStyle paragraph;
  paragraph.alignment = style.alignment;
  paragraph.headIndent = std::max(0.0, style.leftIndent);
  paragraph.firstLineHeadIndent = std::max(0.0, paragraph.headIndent + style.textIndent);
  paragraph.tailIndent = style.rightIndent > 0 ? -style.rightIndent : 0;
  paragraph.paragraphSpacing = style.spaceAfter;
  paragraph.paragraphSpacingBefore = style.spaceBefore;
  paragraph.lineHeightMultiple = style.lineHeightMultiple;
  paragraph.minLineHeight = style.minLineHeight;
  paragraph.maxLineHeight = style.maxLineHeight;
  paragraph.defaultTabInterval = style.tabInterval;
  paragraph.tabStops = style.tabStops;
  paragraph.writingDirection = style.writingDirection;
  paragraph.lists.assign(style.lists.begin(), style.lists.end());
  constexpr double kParts = 1000; // of a point: sums of lengths are not exact
  for (double* length :
       {&paragraph.headIndent, &paragraph.firstLineHeadIndent, &paragraph.tailIndent,
        &paragraph.paragraphSpacing, &paragraph.paragraphSpacingBefore})
    *length = std::round(*length * kParts) / kParts;
  return paragraph == ParagraphStyle() ? std::nullopt : std::optional(paragraph);
}

// The first family that is not a kind of font, or a font of that kind.
QString familyOf(const QStringList& families) {
  for (const QString& family : families) {
    if (family == u"serif")
      return QStringLiteral("Times");
    if (family == u"monospace")
      return QStringLiteral("Courier");
    if (family != u"inherit" && family != u"system-ui" && !family.startsWith(u"-apple"))
      return family == u"sans-serif" ? kDefaultFontName.toString() : family;
  }
  return kDefaultFontName.toString();
}

} // namespace

QString HtmlText::fontName(const HtmlStyle& style) {
  constexpr int kNormal = 400;
  const QString family = familyOf(style.families);
  const int weight = style.weight == 0 ? kNormal : style.weight;
  const bool italic = style.italic.value_or(false);
  const QString key = QStringLiteral("%1 %2 %3").arg(weight).arg(int(italic)).arg(family);
  auto known = m_fontNames.find(key);
  if (known == m_fontNames.end())
    known = m_fontNames.insert(key, fontNameFor(family, weight, italic));
  return *known;
}

TextAttributes HtmlText::attributesOf(const HtmlStyle& style) {
  TextAttributes attributes;
  if (style.hasFont())
    attributes.font = TextFont{fontName(style), soundFontSize(style.sizeOrPlain()), {}};
  auto background = style.background;
  if (!m_colorsAreMeant && background == kWhite)
    background.reset();
  if (background)
    attributes.background = TextColor{*background, false, {}};
  if (style.color && (m_colorsAreMeant || background || style.color != kBlack))
    attributes.color = TextColor{*style.color, false, {}};
  if (style.underline != 0)
    attributes.underline = style.underline;
  if (style.strikethrough != 0)
    attributes.strikethrough = style.strikethrough;
  if (style.superscript != 0)
    attributes.superscript = style.superscript;
  if (isSafeLink(style.link))
    attributes.link = style.link;
  return attributes;
}

// Writes what stands between the text so far and what comes now.
void HtmlText::flushPending() {
  if (m_pending != Pending::Nothing) {
    const bool isFeed = m_pending == Pending::LineFeed;
    m_lineAttributes.paragraph = m_lineStyle;
    appendLimited(m_text, isFeed ? QStringLiteral("\n") : QStringLiteral("\t"), m_lineAttributes);
    m_hasSpace = false;
    if (isFeed)
      m_lineHasContent = false;
    m_pending = Pending::Nothing;
  }
}

void HtmlText::put(const QString& text, const TextAttributes& attributes, const HtmlStyle& style) {
  flushPending();
  if (!m_lineHasContent) {
    m_lineStyle = paragraphOf(style);
    m_hasSpace = false;
  }
  TextAttributes all = attributes;
  all.paragraph = m_lineStyle;
  if (!m_marker.isEmpty()) {
    TextAttributes plain = all;
    plain.link.reset();
    plain.attachment.reset();
    appendLimited(m_text, m_marker, plain);
    m_marker.clear();
  }
  if (m_hasSpace) {
    m_spaceAttributes.paragraph = m_lineStyle;
    appendLimited(m_text, QStringLiteral(" "), m_spaceAttributes);
    m_hasSpace = false;
  }
  appendLimited(m_text, text, all);
  m_lineHasContent = m_cellHasContent = m_rowHasContent = true;
  m_lineAttributes = std::move(all);
  m_lineAttributes.link.reset();
  m_lineAttributes.attachment.reset();
}

void HtmlText::addCollapsed(QStringView text, const HtmlStyle& style) {
  const TextAttributes attributes = attributesOf(style);
  QString collapsed;
  const auto endSpaces = [&] {
    if (!collapsed.isEmpty())
      put(collapsed, attributes, style);
    collapsed.clear();
  };
  bool afterSpace = false; // within this text
  for (const QChar character : text) {
    if (isCollapsible(character)) {
      afterSpace = true;
      continue;
    }
    if (afterSpace && !collapsed.isEmpty()) {
      collapsed += u' ';
    } else if (afterSpace && m_lineHasContent && m_pending == Pending::Nothing && !m_hasSpace) {
      m_hasSpace = true;
      m_spaceAttributes = attributes;
    }
    afterSpace = false;
    collapsed += character;
  }
  endSpaces();
  if (afterSpace && m_lineHasContent && m_pending == Pending::Nothing && !m_hasSpace) {
    m_hasSpace = true;
    m_spaceAttributes = attributes;
  }
}

void HtmlText::addText(QStringView text, const HtmlStyle& style) {
  if (style.isHidden)
    return;
  if (style.spaces == HtmlSpaces::Collapse)
    return addCollapsed(text, style);
  while (!text.isEmpty()) {
    const qsizetype feed = text.indexOf(u'\n');
    QString line = text.left(feed < 0 ? text.size() : feed).toString();
    line.remove(u'\r');
    if (style.spaces == HtmlSpaces::CollapseButLines)
      addCollapsed(line, style);
    else if (!line.isEmpty())
      put(line, attributesOf(style), style);
    if (feed < 0)
      return;
    addLineBreak(style);
    text = text.mid(feed + 1);
  }
}

void HtmlText::addPicture(const TextAttachment& picture, const HtmlStyle& style) {
  if (style.isHidden)
    return;
  TextAttributes attributes = attributesOf(style);
  attributes.attachment = picture;
  put(QString(QChar(AttributedText::kAttachmentCharacter)), attributes, style);
}

void HtmlText::addLineBreak(const HtmlStyle& style) {
  if (style.isHidden)
    return;
  const bool isEmptyLine = !m_lineHasContent || m_pending == Pending::LineFeed;
  if (m_pending == Pending::LineFeed)
    flushPending();
  if (isEmptyLine) {
    if (!m_marker.isEmpty())
      put({}, attributesOf(style), style);
    m_lineStyle = paragraphOf(style);
    m_lineAttributes = attributesOf(style);
    m_lineAttributes.link.reset();
  }
  m_hasSpace = false;
  m_pending = Pending::LineFeed;
}

void HtmlText::addLineSeparator(const HtmlStyle& style) {
  if (!style.isHidden)
    put(QString(QChar::LineSeparator), attributesOf(style), style);
}

void HtmlText::addBoundary() {
  if (m_isInRow && !m_cellHasContent)
    return;
  m_hasSpace = false;
  if (m_lineHasContent)
    m_pending = Pending::LineFeed;
}

void HtmlText::startRow() {
  m_cellHasContent = true;
  addBoundary();
  m_isInRow = true;
  m_rowHasCell = false;
  m_rowHasContent = false;
}

void HtmlText::startCell() {
  m_hasSpace = false;
  if (m_rowHasCell) {
    // A cell before was empty; or all were, and the row before still wants its end.
    if (m_pending == Pending::Tab || !m_rowHasContent)
      flushPending();
    m_rowHasContent = true;
    m_pending = Pending::Tab;
    m_lineHasContent = true;
  }
  m_rowHasCell = true;
  m_cellHasContent = false;
}

void HtmlText::clear() {
  const bool colorsAreMeant = m_colorsAreMeant;
  *this = HtmlText();
  m_colorsAreMeant = colorsAreMeant;
}

AttributedText HtmlText::finish() {
  return std::exchange(m_text, {});
}

} // namespace tockwise
