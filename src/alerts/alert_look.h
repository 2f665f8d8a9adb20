// Colours and style of the alert window, derived from the desktop's palette, so that they follow
// its light, dark and accent colours. Any thread.
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

namespace tockwise {

/// Black or white, whichever reads better on background.
QColor textOn(const QColor& background);
bool isDark(const QPalette& palette);
/// The accent colour, kept apart from the palette's window colour.
QColor alertAccent(const QPalette& palette);
/// The palette of an alert window: the desktop's, with a paper-like ground.
QPalette alertPalette(const QPalette& desktop);
/// The style sheet of an alert window with that palette.
QString alertStyleSheet(const QPalette& palette);

} // namespace tockwise
