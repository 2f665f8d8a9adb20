// The well-known font families: how they name their members, and what can stand for them.
#pragma once

#include <QString>
#include <QStringList>

namespace tockwise {

enum class FontKind { SansSerif, Serif, Monospaced, System };

/// How a family names regular, bold, italic and bold italic members.
enum class FontHabit {
  Plain,    // Georgia, Georgia-Bold, Georgia-Italic, Georgia-BoldItalic
  Oblique,  // Helvetica, Helvetica-Bold, Helvetica-Oblique, Helvetica-BoldOblique
  Regular,  // Menlo-Regular, Menlo-Bold, Menlo-Italic, Menlo-BoldItalic
  Roman,    // Times-Roman, Times-Bold, Times-Italic, Times-BoldItalic
  MT,       // ArialMT, Arial-BoldMT, Arial-ItalicMT, Arial-BoldItalicMT
  PSMT,     // CourierNewPSMT, CourierNewPS-BoldMT, …
  Avenir,   // Avenir-Book, Avenir-Heavy, Avenir-BookOblique, Avenir-HeavyOblique
  Numbers,  // HiraginoSans-W3, HiraginoSans-W6
  NoItalic, // LucidaGrande, LucidaGrande-Bold
  Single,   // Monaco
  Joined    // .AppleSystemUIFont, .AppleSystemUIFontBold, …
};

struct FontFamily {
  QStringView name; // "Times New Roman"
  QStringView base; // "TimesNewRoman", what its PostScript names start with
  FontHabit habit;
  FontKind kind;
  QStringView standIns; // families of nearly its shapes and widths, best first, with "|" between
};

/// The family whose PostScript names start with base, or null.
const FontFamily* familyOfBase(QStringView base);
/// The family of that name, spaces and case aside, or null.
const FontFamily* familyOfName(QStringView name);

/// The kind of a family that is not in the table, by the words of its name.
FontKind kindOfName(QStringView name);

/// Families that stand for any of a kind, best first.
QStringList familiesOfKind(FontKind kind);

} // namespace tockwise
