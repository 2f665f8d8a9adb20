#include "richtext/crazy_text.h"

#include "base/log.h"

#include <QFontDatabase>
#include <QRandomGenerator>
#include <QTextBlock>
#include <QTextDocument>

#include <cmath>
#include <vector>

namespace tockwise {
namespace {

constexpr int kSmallestLetter = 17;
constexpr int kSizeRange = 19;
constexpr int kMostOfColor = 55553;
constexpr float kFullColor = 65535.0F;

/// A character and its place in the document.
struct Place {
  int position;
  int length;
};

std::vector<Place> placesIn(const QTextCursor& selection) {
  std::vector<Place> places;
  const QTextDocument* document = selection.document();
  for (int at = selection.selectionStart(); at < selection.selectionEnd();) {
    // The halves of a character beyond the basic plane must not part.
    const bool isPair = document->characterAt(at).isHighSurrogate() &&
                        document->characterAt(at + 1).isLowSurrogate();
    places.push_back({at, isPair ? 2 : 1});
    at += places.back().length;
  }
  return places;
}

float colorPart(const CrazyChance& chance) {
  return float(chance.upTo(kMostOfColor) + 1) / kFullColor;
}

QTextCharFormat crazyFormat(const QList<QFont>& fonts, const CrazyChance& chance) {
  QTextCharFormat format;
  if (fonts.size() > 1) {
    const QFont& font = fonts[chance.upTo(int(fonts.size()) - 2) + 1];
    format.setFontFamilies(font.families());
    format.setFontWeight(font.weight());
    format.setFontItalic(font.italic());
  }
  format.setFontPointSize(std::round(kSmallestLetter + chance.part() * kSizeRange));
  const float red = colorPart(chance);
  const float green = colorPart(chance);
  const float blue = colorPart(chance);
  format.setForeground(QColor::fromRgbF(red, green, blue));
  return format;
}

} // namespace

CrazyChance systemChance() {
  return {[](int most) { return QRandomGenerator::global()->bounded(most + 1); },
          [] { return QRandomGenerator::global()->generateDouble(); }};
}

QList<QFont> installedFonts() {
  QList<QFont> fonts;
  const QStringList families = QFontDatabase::families();
  for (const QString& family : families) {
    if (QFontDatabase::isPrivateFamily(family))
      continue;
    const QStringList styles = QFontDatabase::styles(family);
    for (const QString& style : styles) {
      QFont font(QStringList{family});
      font.setWeight(QFont::Weight(std::max(1, QFontDatabase::weight(family, style))));
      font.setItalic(QFontDatabase::italic(family, style));
      fonts.push_back(font);
    }
  }
  return fonts;
}

void makeCrazy(const QTextCursor& selection, const QList<QFont>& fonts, const CrazyChance& chance) {
  if (!selection.hasSelection())
    return;
  const std::vector<Place> places = placesIn(selection);
  QTextCursor cursor(selection);
  cursor.beginEditBlock();
  for (const Place& place : places) {
    cursor.setPosition(place.position);
    cursor.setPosition(place.position + place.length, QTextCursor::KeepAnchor);
    if (selection.document()->characterAt(place.position) == QChar::ObjectReplacementCharacter &&
        cursor.charFormat().objectType() != QTextFormat::NoObject) {
      logLine(QStringLiteral("Ignoring attachment for crazy text conversion."));
      continue;
    }
    cursor.mergeCharFormat(crazyFormat(fonts, chance));
  }
  cursor.endEditBlock();
}

} // namespace tockwise
