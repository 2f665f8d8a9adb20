// PostScript names of fonts, and what stands for them on this machine.
#pragma once

#include <QFont>
#include <QString>

namespace tockwise {

/// What text without a font is written in, by the archives' convention: 12 points of it.
inline constexpr QStringView kDefaultFontName = u"Helvetica";

struct FontTraits {
  QString family; // as the name says it, words apart: "Helvetica Neue"
  int weight = QFont::Normal;
  bool italic = false;
  friend bool operator==(const FontTraits&, const FontTraits&) = default;
};

/// What a PostScript name says: "HelveticaNeue-BoldItalic". Names with a leading dot are the
/// system's own font. Any one thread.
FontTraits fontTraits(const QString& postScriptName);

/// The PostScript name for a family of this machine, or one that fontTraits() named, with these
/// traits; of a family that lacks such a weight or slant, the nearest that it has. Any one thread.
QString postScriptName(const FontTraits& traits);

/// The font of this machine that comes closest: the same family, a metric-compatible one, or one
/// of its kind (serif, sans serif, monospaced). Size in points, kept within 0.5 to 2000. Main
/// thread.
QFont fontFor(const QString& postScriptName, double size);

} // namespace tockwise
