// The style of an element while HTML is read: what a run or a paragraph can carry, nothing else.
#pragma once

#include "store/archive/attributed_text.h"

#include <QStringList>

namespace tockwise {

enum class HtmlSpaces { Collapse, CollapseButLines, Keep };

/// Inherited from element to element, but for the members that say otherwise.
struct HtmlStyle {
  // Characters
  QStringList families;
  double size = 0; // points, 0: not stated
  int weight = 0;  // 100 to 900, 0: not stated
  std::optional<bool> italic;
  std::optional<quint32> color;
  std::optional<quint32> background;
  qint64 underline = 0;
  qint64 strikethrough = 0;
  bool drawsUnderline = false; // this element itself
  bool drawsStrikethrough = false;
  int superscript = 0;
  QString link;
  HtmlSpaces spaces = HtmlSpaces::Collapse;
  bool isHidden = false;
  // Paragraphs: lengths in points
  std::optional<TextAlignment> alignment;
  double leftIndent = 0; // of all elements around
  double rightIndent = 0;
  double textIndent = 0;
  double spaceBefore = 0; // of this element only
  double spaceAfter = 0;  // of this element only
  double lineHeightMultiple = 0;
  double minLineHeight = 0;
  double maxLineHeight = 0;
  double tabInterval = 0;
  std::optional<std::vector<TextTab>> tabStops;
  int writingDirection = 0;
  QStringList lists; // marker formats, outermost first

  /// Whether anything of the font is stated that is not as a plain one is.
  bool hasFont() const;
  double sizeOrPlain() const;
};

/// Applies the declarations of a style attribute; what is not understood is passed over.
void applyStyleText(const QString& declarations, HtmlStyle& style);

/// A length as styles write it; nothing when it is none. size: points of 1em.
std::optional<double> htmlLength(QStringView text, double size);

/// A colour as styles and attributes write it, 0xAARRGGBB; nothing when it is none.
std::optional<quint32> htmlColor(QStringView text);

/// The names of a font-family property, without quotes.
QStringList htmlFamilies(const QString& text);

} // namespace tockwise
