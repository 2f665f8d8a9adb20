// Colours told apart and mixed: what can be read on what.
#pragma once

#include <QColor>

namespace tockwise {

/// How bright a colour seems: 0 black, 1 white. Any thread, as all of these.
double luminance(const QColor& color);
/// How far apart two colours are in brightness: 1 not at all, 21 black and white.
double contrast(const QColor& a, const QColor& b);
/// part of a over the rest of b: 1 is a, 0 is b. The result is opaque.
QColor mixed(const QColor& a, const QColor& b, double part);
/// color as one that lets through what is below it: opacity 1 nothing, 0 all.
QColor withOpacity(QColor color, double opacity);

} // namespace tockwise
