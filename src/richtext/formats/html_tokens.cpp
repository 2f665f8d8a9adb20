#include "richtext/formats/html_tokens.h"

#include <algorithm>

namespace tockwise {
namespace {

constexpr size_t kMostAttributes = 64;
constexpr qsizetype kLongestTagName = 64;
constexpr qsizetype kLongestReference = 32;

bool isLetter(QChar character) {
  return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool isSpace(QChar character) {
  return character == u' ' || character == u'\n' || character == u'\t' || character == u'\r' ||
         character == u'\f';
}

// Elements whose contents are not HTML.
bool isRawElement(const QString& name) {
  static const QStringView kNames[] = {u"script", u"style",   u"title",    u"textarea",
                                       u"iframe", u"noembed", u"noframes", u"xmp"};
  return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

// What the numbers 0x80 to 0x9f mean on the Web: windows-1252.
constexpr char16_t kWesternControls[] = {
    0x20ac, 0x81,   0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8d,   0x017d, 0x8f,   0x90,   0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x9d,   0x017e, 0x0178};

char32_t numberedCharacter(QStringView digits) {
  const bool isHex = digits.startsWith(u'x') || digits.startsWith(u'X');
  bool valid = false;
  const uint code = isHex ? digits.mid(1).toUInt(&valid, 16) : digits.toUInt(&valid, 10);
  if (!valid || code == 0 || code > 0x10ffff || (code >= 0xd800 && code <= 0xdfff))
    return valid ? U'\xfffd' : 0;
  return code >= 0x80 && code <= 0x9f ? kWesternControls[code - 0x80] : code;
}

// The reference that starts at the ampersand text[at]: its character and its length with "&" and
// ";"; 0 when it is none.
std::pair<char32_t, qsizetype> referenceAt(QStringView text, qsizetype at) {
  qsizetype end = at + 1;
  const qsizetype most = std::min(text.size(), at + kLongestReference);
  if (end < most && text[end] == u'#')
    ++end;
  while (end < most && text[end].unicode() < 0x80 && text[end].isLetterOrNumber())
    ++end;
  const QStringView name = text.mid(at + 1, end - at - 1);
  const bool isClosed = end < text.size() && text[end] == u';';
  char32_t character = 0;
  if (name.startsWith(u'#'))
    character = numberedCharacter(name.mid(1));
  else if (isClosed || name == u"amp" || name == u"lt" || name == u"gt" || name == u"nbsp" ||
           name == u"quot")
    character = namedCharacter(name);
  return {character, end - at + (isClosed ? 1 : 0)};
}

} // namespace

QString resolvedReferences(QStringView text) {
  QString resolved;
  resolved.reserve(text.size());
  qsizetype done = 0;
  for (qsizetype at = text.indexOf(u'&'); at >= 0; at = text.indexOf(u'&', at)) {
    const auto [character, length] = referenceAt(text, at);
    if (character == 0) {
      ++at;
      continue;
    }
    resolved += text.mid(done, at - done);
    resolved += QStringView(QChar::fromUcs4(character));
    at += length;
    done = at;
  }
  resolved += text.mid(done);
  return resolved;
}

QStringView HtmlToken::rawAttribute(QStringView attributeName) const {
  for (const auto& [key, value] : attributes) {
    if (key == attributeName)
      return value;
  }
  return {};
}

QString HtmlToken::attribute(QStringView attributeName) const {
  return resolvedReferences(rawAttribute(attributeName));
}

HtmlToken HtmlTokens::next() {
  if (m_at >= m_html.size())
    return {};
  if (!m_rawElement.isEmpty()) {
    const QString ending = QStringLiteral("</") + m_rawElement;
    m_rawElement.clear();
    const qsizetype end = m_html.indexOf(ending, m_at, Qt::CaseInsensitive);
    if (end != m_at)
      return text(end < 0 ? m_html.size() : end);
  }
  if (m_html[m_at] == u'<' && m_at + 1 < m_html.size()) {
    const QChar after = m_html[m_at + 1];
    if (after == u'!' || after == u'?')
      return comment();
    if (isLetter(after) ||
        (after == u'/' && m_at + 2 < m_html.size() && isLetter(m_html[m_at + 2])))
      return tag();
  }
  const qsizetype end = m_html.indexOf(u'<', m_at + 1);
  return text(end < 0 ? m_html.size() : end);
}

HtmlToken HtmlTokens::text(qsizetype end) {
  HtmlToken token;
  token.kind = HtmlToken::Kind::Text;
  token.content = m_html.mid(m_at, end - m_at);
  m_at = end;
  return token;
}

HtmlToken HtmlTokens::comment() {
  const bool isComment = m_html.mid(m_at).startsWith(u"<!--");
  const qsizetype start = m_at + (isComment ? 4 : 2);
  const QStringView ending = isComment ? QStringView(u"-->") : QStringView(u">");
  const qsizetype end = m_html.indexOf(ending, start);
  HtmlToken token;
  token.kind = HtmlToken::Kind::Comment;
  token.content = m_html.mid(start, end < 0 ? -1 : end - start);
  m_at = end < 0 ? m_html.size() : end + ending.size();
  return token;
}

HtmlToken HtmlTokens::tag() {
  HtmlToken token;
  token.kind = HtmlToken::Kind::Start;
  ++m_at;
  if (m_html[m_at] == u'/') {
    token.kind = HtmlToken::Kind::End;
    ++m_at;
  }
  const qsizetype start = m_at;
  while (m_at < m_html.size() && !isSpace(m_html[m_at]) && m_html[m_at] != u'>' &&
         m_html[m_at] != u'/')
    ++m_at;
  token.name = m_html.mid(start, std::min(m_at - start, kLongestTagName)).toString().toLower();
  readAttributes(token);
  if (token.kind == HtmlToken::Kind::Start && isRawElement(token.name))
    m_rawElement = token.name;
  return token;
}

void HtmlTokens::skipSpaces() {
  while (m_at < m_html.size() && (isSpace(m_html[m_at]) || m_html[m_at] == u'/'))
    ++m_at;
}

// Up to the end of the tag, which it passes.
void HtmlTokens::readAttributes(HtmlToken& token) {
  for (;;) {
    skipSpaces();
    if (m_at >= m_html.size())
      return;
    if (m_html[m_at] == u'>') {
      ++m_at;
      return;
    }
    const qsizetype start = m_at++;
    while (m_at < m_html.size() && !isSpace(m_html[m_at]) && m_html[m_at] != u'=' &&
           m_html[m_at] != u'>' && m_html[m_at] != u'/')
      ++m_at;
    const QStringView name = m_html.mid(start, std::min(m_at - start, kLongestTagName));
    skipSpaces();
    QStringView value;
    if (m_at < m_html.size() && m_html[m_at] == u'=') {
      ++m_at;
      value = readValue();
    }
    if (token.attributes.size() < kMostAttributes)
      token.attributes.emplace_back(name.toString().toLower(), value);
  }
}

QStringView HtmlTokens::readValue() {
  while (m_at < m_html.size() && isSpace(m_html[m_at]))
    ++m_at;
  if (m_at >= m_html.size())
    return {};
  const QChar quote = m_html[m_at];
  if (quote == u'"' || quote == u'\'') {
    const qsizetype start = m_at + 1;
    const qsizetype found = m_html.indexOf(quote, start);
    const qsizetype end = found < 0 ? m_html.size() : found;
    m_at = std::min(end + 1, m_html.size());
    return m_html.mid(start, end - start);
  }
  const qsizetype start = m_at;
  while (m_at < m_html.size() && !isSpace(m_html[m_at]) && m_html[m_at] != u'>')
    ++m_at;
  return m_html.mid(start, m_at - start);
}

} // namespace tockwise
