// Texts of others, made harmless for a terminal, a log and a window's title: what steers them is
// replaced by what they show and do not obey. Any thread.
#pragma once

#include <QString>

namespace tockwise {

/// One line: control characters, line feeds and marks that turn the writing direction are replaced,
/// tabs become blanks.
QString harmlessLine(const QString& text);

/// The lines that text has: control characters are replaced, line feeds and tabs stay, and so do
/// the marks that some languages are written with.
QString harmlessLines(QString text);

/// text without the marks that turn the writing direction of what follows them: they would reorder
/// what stands behind it. Marks that only join or part letters stay.
QString withoutDirections(QString text);

} // namespace tockwise
