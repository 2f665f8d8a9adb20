#include "base/harmless_text.h"

#include <QList>

namespace tockwise {
namespace {

constexpr char16_t kPictures = 0x2400; // of U+0000 and what follows it
constexpr char16_t kPictureOfDelete = 0x2421;

QChar shownFor(char32_t control) {
  if (control < 0x20)
    return QChar(char16_t(kPictures + control));
  return control == 0x7f ? QChar(kPictureOfDelete) : QChar(QChar::ReplacementCharacter);
}

bool steersOneLine(char32_t point) {
  switch (QChar::category(point)) {
  case QChar::Other_Control:
  case QChar::Other_Format:
  case QChar::Other_Surrogate:
  case QChar::Separator_Line:
  case QChar::Separator_Paragraph:
    return true;
  default:
    return false;
  }
}

bool turnsDirection(QChar character) {
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
}

} // namespace

QString harmlessLine(const QString& text) {
  QString line;
  line.reserve(text.size());
  for (const char32_t point : text.toUcs4()) {
    if (point == U'\t')
      line += u' ';
    else if (steersOneLine(point))
      line += shownFor(point);
    else
      line += QString::fromUcs4(&point, 1);
  }
  return line;
}

QString harmlessLines(QString text) {
  for (QChar& c : text) {
    if (c != u'\n' && c != u'\t' && c.category() == QChar::Other_Control)
      c = shownFor(c.unicode());
  }
  return text;
}

QString withoutDirections(QString text) {
  return text.removeIf(turnsDirection);
}

} // namespace tockwise
