#include "richtext/formats/rtf_pictures.h"

#include "richtext/formats/picture_type.h"
#include "richtext/formats/rtf_tokens.h"
#include "richtext/picture_scaling.h"
#include "store/archive/file_wrapper.h"

namespace tockwise {

void RtfPicture::addHex(QByteArrayView digits) {
  for (const char byte : digits) {
    const int digit = hexDigit(byte);
    if (digit < 0)
      continue;
    if (m_halfByte < 0) {
      m_halfByte = digit;
    } else {
      if (m_contents.size() < kMostPictureBytes)
        m_contents += char(m_halfByte * 16 + digit);
      m_halfByte = -1;
    }
  }
}

void RtfPicture::addBytes(QByteArrayView bytes) {
  if (m_contents.size() + bytes.size() <= kMostPictureBytes)
    m_contents += bytes;
}

void RtfPicture::endProperty() {
  if (m_propertyName.trimmed() == u"pibName")
    m_fileName = sanitisedFileName(m_propertyValue.trimmed());
  m_propertyName.clear();
  m_propertyValue.clear();
}

std::optional<TextAttachment> RtfPicture::finish() const {
  const auto type = pictureTypeOf(m_contents);
  if (!type)
    return std::nullopt;
  const QString name = m_fileName.isEmpty() ? QStringLiteral("image.") + type->suffix : m_fileName;
  return TextAttachment{name, m_contents, {}};
}

QString addressOfInstruction(const QString& instruction) {
  const QString text = instruction.trimmed();
  const QString keyword = QStringLiteral("HYPERLINK");
  if (!text.startsWith(keyword, Qt::CaseInsensitive))
    return {};
  QStringView rest = QStringView(text).mid(keyword.size()).trimmed();
  if (!rest.startsWith(u'"')) { // up to the first blank; a switch (\l) names a place in the text
    const qsizetype end = rest.indexOf(u' ');
    return rest.startsWith(u'\\') ? QString() : rest.left(end < 0 ? rest.size() : end).toString();
  }
  QString address;
  for (qsizetype at = 1; at < rest.size() && rest[at] != u'"'; ++at) {
    const bool isEscape = rest[at] == u'\\' && at + 1 < rest.size() &&
                          (rest[at + 1] == u'\\' || rest[at + 1] == u'"');
    at += isEscape ? 1 : 0;
    address += rest[at];
  }
  return address;
}

} // namespace tockwise
