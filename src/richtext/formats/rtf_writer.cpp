#include "richtext/formats/rtf_writer.h"

#include "richtext/formats/paragraphs.h"
#include "richtext/formats/picture_type.h"
#include "richtext/formats/rtf_format_text.h"
#include "richtext/formats/rtf_units.h"
#include "richtext/text_formats.h"

namespace tockwise {
namespace {

constexpr qsizetype kHexLine = 128;

// A link as the argument of a field's instruction: quoted there, then escaped for RTF.
QByteArray linkArgument(const QString& link) {
  QString quoted = cleanText(link);
  quoted.replace(u'\\', QStringLiteral("\\\\"));
  quoted.replace(u'"', QStringLiteral("\\\""));
  return "\"" + escapedForRTF(quoted) + "\"";
}

class RtfWriter {
 public:
  explicit RtfWriter(const AttachmentGroup& attachmentGroup) : m_attachmentGroup(attachmentGroup) {}

  QByteArray write(const AttributedText& text) {
    QByteArray paragraphWords;
    for (const TextParagraph& paragraph : paragraphsOf(text)) {
      const bool isEnd = paragraph.pieces.empty() && !paragraph.ending;
      const QByteArray words = RtfFormatText::paragraphWords(paragraph.style);
      if (words != paragraphWords && !isEnd) {
        m_body += words + '\n';
        paragraphWords = words;
      }
      for (const TextPiece& piece : paragraph.pieces)
        writePiece(piece.text, *piece.attributes);
      if (paragraph.ending)
        writePiece(u"\n", *paragraph.ending);
    }
    return "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n" + m_format.tables() + m_body + "}";
  }

 private:
  void writePiece(QStringView text, const TextAttributes& attributes) {
    const QByteArray words = m_format.characterWords(attributes);
    if (attributes.link) {
      m_body += "{\\field{\\*\\fldinst{HYPERLINK " + linkArgument(*attributes.link) +
                "}}{\\fldrslt " + words + ' ';
      writeText(text, attributes);
      m_body += "}}";
      return;
    }
    if (words != m_words) {
      m_body += words + ' ';
      m_words = words;
    }
    writeText(text, attributes);
  }

  void writeText(QStringView text, const TextAttributes& attributes) {
    if (!attributes.attachment) {
      m_body += escapedForRTF(text);
      return;
    }
    qsizetype done = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
      if (text[at] != AttributedText::kAttachmentCharacter)
        continue;
      m_body += escapedForRTF(text.mid(done, at - done));
      m_body += m_attachmentGroup(*attributes.attachment);
      done = at + 1;
    }
    m_body += escapedForRTF(text.mid(done));
  }

  const AttachmentGroup& m_attachmentGroup;
  RtfFormatText m_format;
  QByteArray m_body;
  QByteArray m_words; // in effect at the end of m_body
};

void appendEscaped(QByteArray& bytes, char16_t character) {
  switch (character) {
  case u'\\':
  case u'{':
  case u'}':
    bytes += '\\';
    bytes += char(character);
    break;
  case u'\t':
    bytes += "\\tab ";
    break;
  case u'\n':
    bytes += "\\par\n";
    break;
  case u'\x2028':
    bytes += "\\line ";
    break;
  default:
    if (character >= 0x20 && character < 0x7f)
      bytes += char(character);
    else
      bytes += "\\u" + QByteArray::number(qint16(character)) + '?';
  }
}

} // namespace

QByteArray escapedForRTF(QStringView text) {
  QByteArray bytes;
  bytes.reserve(text.size());
  for (const QChar character : cleanText(text.toString()))
    appendEscaped(bytes, character.unicode());
  return bytes;
}

QByteArray pictureGroup(const TextAttachment& attachment) {
  const auto picture = portablePicture(attachment.contents, Gif::Convert);
  if (!picture)
    return escapedForRTF(u'[' + attachment.name + u']');
  const QSize size = picture->type.size;
  QByteArray group = "{\\pict{\\*\\picprop{\\sp{\\sn pibName}{\\sv " +
                     escapedForRTF(attachment.name) + "}}}\\picscalex100\\picscaley100";
  group += "\\picw" + QByteArray::number(size.width());
  group += "\\pich" + QByteArray::number(size.height());
  group += "\\picwgoal" + QByteArray::number(size.width() * kTwipsPerPixel);
  group += "\\pichgoal" + QByteArray::number(size.height() * kTwipsPerPixel);
  group += picture->type.suffix == u"png" ? "\\pngblip" : "\\jpegblip";
  const QByteArray hex = picture->bytes.toHex();
  for (qsizetype at = 0; at < hex.size(); at += kHexLine)
    group += '\n' + hex.mid(at, kHexLine);
  return group + "}";
}

QByteArray writeRTF(const AttributedText& text, const AttachmentGroup& attachmentGroup) {
  return RtfWriter(attachmentGroup).write(text);
}

QByteArray toRTF(const AttributedText& text) {
  return writeRTF(text, pictureGroup);
}

} // namespace tockwise
