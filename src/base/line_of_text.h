// Texts from elsewhere where they stand in a line of our own: in the log, in a window's title.
#pragma once

#include <QString>

namespace tockwise {

/// One line for the log: control characters, line feeds and marks that turn the writing direction
/// are replaced by what a terminal shows and does not obey. Any thread, as all here.
QString harmlessLine(const QString& text);

/// text without the marks that turn the writing direction of what follows them: a title ends with
/// words of our own, which they would reorder. Marks that only join or part letters stay.
QString withoutDirections(QString text);

} // namespace tockwise
