#include "richtext/formats/html_charset.h"

#include "richtext/formats/code_page.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>

namespace tockwise {
namespace {

constexpr qsizetype kBytesWithCharset = 2048; // bytes in which a page says what it is

// Some programs put UTF-16 on the clipboard without a mark: every second byte of tags is 0.
std::optional<QStringConverter::Encoding> unmarkedWide(const QByteArray& bytes) {
  const qsizetype pairs = std::min<qsizetype>(bytes.size(), 64) / 2;
  qsizetype evenZeros = 0;
  qsizetype oddZeros = 0;
  for (qsizetype i = 0; i < pairs; ++i) {
    evenZeros += bytes[2 * i] == 0 ? 1 : 0;
    oddZeros += bytes[2 * i + 1] == 0 ? 1 : 0;
  }
  if (pairs > 0 && oddZeros * 2 > pairs)
    return QStringConverter::Utf16LE;
  if (pairs > 0 && evenZeros * 2 > pairs)
    return QStringConverter::Utf16BE;
  return std::nullopt;
}

QByteArray statedName(const QByteArray& bytes) {
  static const QRegularExpression meta(
      QStringLiteral("<meta[^>]{0,200}?charset\\s*=\\s*[\"']?([A-Za-z0-9_:.-]{1,40})"),
      QRegularExpression::CaseInsensitiveOption);
  const auto match = meta.match(QString::fromLatin1(bytes.left(kBytesWithCharset)));
  return match.captured(1).toLatin1().toLower();
}

} // namespace

QString decodedHTML(const QByteArray& bytes) {
  auto encoding = QStringConverter::encodingForData(bytes);
  if (!encoding)
    encoding = unmarkedWide(bytes);
  if (encoding)
    return QStringDecoder(*encoding).decode(bytes);
  const QByteArray name = statedName(bytes);
  QStringDecoder utf8(QStringConverter::Utf8);
  QString text = utf8.decode(bytes);
  if (!utf8.hasError() || name == "utf-8" || name == "utf8")
    return text;
  CodePages pages;
  const bool isWide = name.startsWith("utf-16"); // which these bytes cannot be
  return isWide || name.isEmpty() ? pages.decode(bytes, 1252) : pages.decode(bytes, name);
}

} // namespace tockwise
