// What the formatting bar does to the text at the cursor of a view; each one step of undo.
#pragma once

#include <QColor>
#include <QTextCharFormat>

#include <optional>

class QTextEdit;

namespace tockwise {

/// What the bar shows: the format of the first character of the selection, or that of what would be
/// typed.
struct TextState {
  bool isBold = false;
  bool isItalic = false;
  bool isUnderlined = false;
  double size = 0;             // points
  std::optional<QColor> color; // nothing: the theme's
  QString link;
};
TextState textState(const QTextEdit& view);

void setBold(QTextEdit& view, bool bold);
void setItalic(QTextEdit& view, bool italic);
void setUnderlined(QTextEdit& view, bool underlined);
/// points: above 0.
void setFontSize(QTextEdit& view, double points);
/// Nothing: the theme's own.
void setColor(QTextEdit& view, const std::optional<QColor>& color);
void setAlignment(QTextEdit& view, Qt::Alignment alignment);

/// Selects the link that the cursor is in, if nothing is selected.
void selectLink(QTextEdit& view);
/// Makes the selection a link, or inserts the address as one where nothing is selected.
void setLink(QTextEdit& view, const QString& address);
void removeLink(QTextEdit& view);

} // namespace tockwise
