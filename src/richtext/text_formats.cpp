#include "richtext/text_formats.h"

#include "richtext/formats/rtf_reader.h"

namespace tockwise {

QString toPlainText(const AttributedText& text) {
  QString plain;
  qsizetype at = 0;
  for (const TextRun& run : text.runs) {
    QString piece = text.text.mid(at, run.length);
    if (run.attributes.attachment) {
      piece.replace(QChar(AttributedText::kAttachmentCharacter),
                    u'[' + run.attributes.attachment->name + u']');
    }
    plain += piece;
    at += run.length;
  }
  return plain.replace(QChar::LineSeparator, u'\n');
}

Result<AttributedText> fromRTF(const QByteArray& bytes) {
  return readRTF(bytes, [](const QString&) { return std::nullopt; });
}

} // namespace tockwise
