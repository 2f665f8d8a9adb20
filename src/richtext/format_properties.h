// What our character and block formats carry beside what Qt shows of them. Everything is in the
// formats, so undo, cut and paste keep it.
#pragma once

#include "store/archive/attributed_text.h"

#include <QMetaType>
#include <QTextFormat>

#include <memory>

namespace tockwise {

/// The attributes that a run was read with.
struct RunOrigin {
  std::shared_ptr<const TextAttributes> attributes;
  friend bool operator==(const RunOrigin& one, const RunOrigin& other) {
    return one.attributes == other.attributes ||
           (one.attributes && other.attributes && *one.attributes == *other.attributes);
  }
};

/// The style that a block shows, unless its format was changed since.
struct ParagraphOrigin {
  std::shared_ptr<const ParagraphStyle> style;
  friend bool operator==(const ParagraphOrigin& one, const ParagraphOrigin& other) {
    return one.style == other.style || (one.style && other.style && *one.style == *other.style);
  }
};

enum FormatProperty : int {
  // of characters
  RunOriginProperty = QTextFormat::UserProperty + 0x700,
  /// Spreads formats that differ in their origins only over Qt's table of formats.
  RunHashProperty,
  /// The colour that a link is shown in, where that is not the text's own: an int of 0xAARRGGBB.
  LinkColorProperty,
  /// On the character between two blocks: the line end that it is, when it is not U+000A.
  LineEndProperty,
  /// On U+FFFD: the character that it is shown for.
  StandsForProperty,
  // of blocks
  ParagraphOriginProperty,
  /// The marker formats of the lists that the paragraph is in, outermost first: a QStringList.
  ListMarkersProperty
};

} // namespace tockwise

Q_DECLARE_METATYPE(tockwise::RunOrigin)
Q_DECLARE_METATYPE(tockwise::ParagraphOrigin)
