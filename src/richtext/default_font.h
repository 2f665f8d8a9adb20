// The font of text that states none.
#pragma once

#include "store/archive/attributed_text.h"

namespace tockwise {

/// Where some of the text has a font, gives the rest the default one at that size (points), so
/// that every program shows the same proportions. A text without any font stays without: it takes
/// the font of whatever shows it.
void stateDefaultFont(AttributedText& text, double size);

/// Whether any of the text has a font.
bool hasFont(const AttributedText& text);

} // namespace tockwise
