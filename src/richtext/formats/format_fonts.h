// Fonts as other formats name them: a family, a weight and a slant.
#pragma once

#include "store/archive/attributed_text.h"

namespace tockwise {

/// What a format that states a font without its size gets.
inline constexpr double kPlainFontSize = 12; // points
inline constexpr double kSmallestFontSize = 0.5;
inline constexpr double kLargestFontSize = 2000;

/// The name under which other programs look for a font: its family, with a weight that is neither
/// normal nor bold as part of it ("Helvetica Neue Light").
QString visibleFamily(const QString& postScriptName);

/// Whether other programs show the font of this name in bold, or slanted.
bool isBoldFont(const QString& postScriptName);
bool isItalicFont(const QString& postScriptName);
/// 100 to 900, 400 for a normal one.
int weightOfFont(const QString& postScriptName);

/// The PostScript name for what a format states. stated: a family or already a PostScript name,
/// which is kept when it says the same; weight: 100 to 900.
QString fontNameFor(const QString& stated, int weight, bool italic);

/// size within what a font may have; kPlainFontSize for none.
double soundFontSize(double size);

} // namespace tockwise
