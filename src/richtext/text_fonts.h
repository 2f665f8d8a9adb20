// PostScript names of fonts, and what stands for them on this machine.
#pragma once

#include <QFont>
#include <QString>

namespace tockwise {

struct FontTraits {
  QString family; // as the name says it, words apart: "Helvetica Neue"
  int weight = QFont::Normal;
  bool italic = false;
  friend bool operator==(const FontTraits&, const FontTraits&) = default;
};

/// What a PostScript name says: "HelveticaNeue-BoldItalic". Names with a leading dot are the
/// system's own font.
FontTraits fontTraits(const QString& postScriptName);

/// The PostScript name for a family of this machine with these traits.
QString postScriptName(const FontTraits& traits);

/// The font of this machine that comes closest: the same family, a metric-compatible one, or one
/// of its kind (serif, sans serif, monospaced). Size in points. Main thread.
QFont fontFor(const QString& postScriptName, double size);

} // namespace tockwise
