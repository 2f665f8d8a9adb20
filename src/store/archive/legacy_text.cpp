#include "store/archive/legacy_text.h"

#include <QStringDecoder>
#include <QStringView>

namespace tockwise {
namespace {

// The upper halves, from 0x80 on; the lower ones are ASCII.
constexpr char16_t kMacRoman[] =
    u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    u"¿¡¬√ƒ≈∆«»…\u00a0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uf8ffÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
constexpr char16_t kNextStep[] =
    u"\u00a0ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖÙÚÛÜÝÞµ×÷©¡¢£⁄¥ƒ§¤’“«‹›ﬁﬂ®–†‡·¦¶•‚„”»…‰¬¿"
    u"¹ˋ´ˆ˜¯˘˙¨²˚¸³˝˛ˇ—±¼½¾àáâãäåçèéêëìÆíªîïðñŁØŒºòóôõöæùúûıüýłøœßþÿ\ufffd\ufffd";
static_assert(std::size(kMacRoman) == 128 + 1 && std::size(kNextStep) == 128 + 1);

QStringView upperHalf(LegacyCharset charset) {
  return {charset == LegacyCharset::MacRoman ? kMacRoman : kNextStep, 128};
}

} // namespace

QString decodeLegacy(const QByteArray& bytes, LegacyCharset charset) {
  const QStringView upper = upperHalf(charset);
  QString text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto code = quint8(byte);
    text += code < 0x80 ? QChar(char16_t(code)) : upper[code - 0x80];
  }
  return text;
}

QByteArray encodeLegacy(const QString& text, LegacyCharset charset) {
  const QStringView upper = upperHalf(charset);
  QByteArray bytes;
  bytes.reserve(text.size());
  for (const QChar character : text) {
    const qsizetype at = upper.indexOf(character);
    if (character.unicode() < 0x80)
      bytes += char(character.unicode());
    else
      bytes += at >= 0 && character != QChar::ReplacementCharacter ? char(0x80 + at) : '_';
  }
  return bytes;
}

QString decodeUtf8OrLegacy(const QByteArray& bytes, LegacyCharset charset) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString text = decoder.decode(bytes);
  return decoder.hasError() ? decodeLegacy(bytes, charset) : text;
}

} // namespace tockwise
