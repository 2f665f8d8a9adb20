#include "richtext/formats/rtf_tokens.h"

#include <algorithm>
#include <limits>

namespace tockwise {
namespace {

bool isLetter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

} // namespace

int hexDigit(char byte) {
  if (isDigit(byte))
    return byte - '0';
  const char lower = char(byte | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

RtfToken RtfTokens::next() {
  if (m_binary > 0) {
    const qsizetype length = std::min(m_binary, m_bytes.size() - m_at);
    m_binary = 0;
    m_at += length;
    return {RtfToken::Kind::Binary, m_bytes.sliced(m_at - length, length), {}};
  }
  while (m_at < m_bytes.size() &&
         (m_bytes[m_at] == '\r' || m_bytes[m_at] == '\n' || m_bytes[m_at] == '\0'))
    ++m_at;
  if (m_at >= m_bytes.size())
    return {};
  switch (m_bytes[m_at]) {
  case '{':
    return {RtfToken::Kind::GroupStart, m_bytes.sliced(m_at++, 1), {}};
  case '}':
    return {RtfToken::Kind::GroupEnd, m_bytes.sliced(m_at++, 1), {}};
  case '\\':
    return control();
  default:
    return text();
  }
}

RtfToken RtfTokens::text() {
  const qsizetype start = m_at;
  while (m_at < m_bytes.size() && !QByteArrayView("{}\\\r\n\0", 6).contains(m_bytes[m_at]))
    ++m_at;
  return {RtfToken::Kind::Text, m_bytes.sliced(start, m_at - start), {}};
}

RtfToken RtfTokens::control() {
  ++m_at;
  if (m_at >= m_bytes.size())
    return {};
  if (isLetter(m_bytes[m_at]))
    return word();
  if (m_bytes[m_at] != '\'')
    return {RtfToken::Kind::Symbol, m_bytes.sliced(m_at++, 1), {}};
  ++m_at;
  int value = 0;
  const qsizetype start = m_at;
  while (m_at < m_bytes.size() && m_at - start < 2 && hexDigit(m_bytes[m_at]) >= 0)
    value = value * 16 + hexDigit(m_bytes[m_at++]);
  return {RtfToken::Kind::Byte, m_bytes.sliced(start, m_at - start), value};
}

RtfToken RtfTokens::word() {
  const qsizetype start = m_at;
  while (m_at < m_bytes.size() && isLetter(m_bytes[m_at]))
    ++m_at;
  RtfToken token{RtfToken::Kind::Word, m_bytes.sliced(start, m_at - start), {}};
  const bool isNegative =
      m_at + 1 < m_bytes.size() && m_bytes[m_at] == '-' && isDigit(m_bytes[m_at + 1]);
  m_at += isNegative ? 1 : 0;
  if (m_at < m_bytes.size() && isDigit(m_bytes[m_at])) {
    constexpr qint64 kLargest = std::numeric_limits<int>::max();
    qint64 value = 0;
    for (; m_at < m_bytes.size() && isDigit(m_bytes[m_at]); ++m_at)
      value = std::min(value * 10 + (m_bytes[m_at] - '0'), kLargest);
    token.parameter = int(isNegative ? -value : value);
  }
  if (m_at < m_bytes.size() && m_bytes[m_at] == ' ')
    ++m_at;
  if (token.bytes == "bin")
    m_binary = std::clamp<qsizetype>(token.parameter.value_or(0), 0, m_bytes.size() - m_at);
  return token;
}

} // namespace tockwise
