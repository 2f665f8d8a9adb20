#include "base/line_of_text.h"

#include <QList>

namespace tockwise {

QString harmlessLine(const QString& text) {
  QString line;
  line.reserve(text.size());
  for (const uint point : text.toUcs4()) {
    const QChar::Category category = QChar::category(char32_t(point));
    if (point == '\t')
      line += u' ';
    else if (point < 0x20)
      line += QChar(char16_t(0x2400 + point)); // the picture of the control character
    else if (category == QChar::Other_Control || category == QChar::Other_Format ||
             category == QChar::Other_Surrogate || category == QChar::Separator_Line ||
             category == QChar::Separator_Paragraph)
      line += QChar(QChar::ReplacementCharacter);
    else
      line += QString::fromUcs4(reinterpret_cast<const char32_t*>(&point), 1);
  }
  return line;
}

QString withoutDirections(QString text) {
  return text.removeIf([](QChar character) {
    switch (character.direction()) {
    case QChar::DirLRE:
    case QChar::DirRLE:
    case QChar::DirLRO:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
      return true;
    default:
      return false;
    }
  });
}

} // namespace tockwise
