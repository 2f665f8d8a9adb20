// What a group of RTF inherits and may change: the properties of characters and of paragraphs.
#pragma once

#include "store/archive/attributed_text.h"

#include <QByteArrayView>

#include <optional>

namespace tockwise {

/// Where the text of a group goes.
enum class RtfDestination {
  Text,
  Skipped,
  Alternatives, // of which the one in Unicode is the text
  FontTable,
  FontAlternate, // the other name of a font
  ColorTable,
  ColorExtension,
  FieldInstruction,
  Picture,
  PictureProperties,
  PropertyName,
  PropertyValue,
  AttachedFile, // the name of a file beside the text
};

struct RtfCharacters {
  int font = -1; // an index into the font table; -1: not stated
  int size = -1; // half points; -1: not stated
  bool bold = false;
  bool italic = false;
  bool hidden = false;
  int color = 0; // an index into the colour table; 0: not stated
  int background = 0;
  qint64 underline = 0;
  qint64 strikethrough = 0;
  int superscript = 0;
  friend bool operator==(const RtfCharacters&, const RtfCharacters&) = default;
};

/// Lengths in twips.
struct RtfParagraph {
  std::optional<TextAlignment> alignment;
  int leftIndent = 0;
  int firstIndent = 0; // from leftIndent
  int rightIndent = 0;
  int spaceBefore = 0;
  int spaceAfter = 0;
  int lineSpacing = 0;
  bool lineSpacingIsMultiple = false; // of 240ths of a line
  int leading = 0;
  int leastHeight = 0;
  int mostHeight = 0;
  int tabInterval = 0;
  int writingDirection = 0;
  qint64 nextTabAlignment = 0;
  std::vector<TextTab> tabs;

  ParagraphStyle style() const;
};

struct RtfState {
  RtfDestination destination = RtfDestination::Text;
  RtfCharacters characters;
  RtfParagraph paragraph;
  QString link;
  int skippedAfterUnicode = 1; // \uc
};

/// Applies a control word that changes a property; false when it is none.
bool applyRtfProperty(QByteArrayView word, std::optional<int> parameter, RtfState& state);

/// The character that a control word or symbol stands for; 0 for none.
char16_t rtfCharacter(QByteArrayView word);

} // namespace tockwise
