// Rich text as archives hold it: text, runs of attributes, attachments. A plain value without a
// toolkit, which readers of archives make, windows show, and writers take back.
#pragma once

#include "store/archive/archive_object.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace tockwise {

// Each known value carries the object it was read from, so that what we do not understand of it is
// written back. Whoever changes a value makes a new one, without an original.

struct TextFont {
  QString name;    // PostScript name; bold and italic are part of it: "Helvetica-BoldOblique"
  double size = 0; // points
  ArchiveObject original;
  friend bool operator==(const TextFont&, const TextFont&) = default;
};

struct TextColor {
  quint32 argb = 0xff000000; // sRGB, 0xAARRGGBB
  /// A colour of the system that means the theme's own text or text background: not to be shown
  /// as argb.
  bool followsTheme = false;
  ArchiveObject original;
  friend bool operator==(const TextColor&, const TextColor&) = default;
};

struct TextTab {
  double location = 0;  // points
  qint64 alignment = 0; // as TextAlignment: of the text at the tab
  ArchiveObject original;
  friend bool operator==(const TextTab&, const TextTab&) = default;
};

enum class TextAlignment { Left = 0, Right = 1, Center = 2, Justified = 3, Natural = 4 };

/// Lengths in points; 0 is each one's default.
struct ParagraphStyle {
  std::optional<TextAlignment> alignment; // nothing: not stated, shown as left
  double firstLineHeadIndent = 0;
  double headIndent = 0;
  double tailIndent = 0; // positive from the left margin, else from the right one
  double paragraphSpacing = 0;
  double paragraphSpacingBefore = 0;
  double lineSpacing = 0;
  double lineHeightMultiple = 0;
  double minLineHeight = 0;
  double maxLineHeight = 0;
  double defaultTabInterval = 0;
  std::optional<std::vector<TextTab>> tabStops; // nothing: twelve, every 28 points
  int writingDirection = 0;                     // 0 natural, 1 left to right, 2 right to left
  std::vector<QString> lists; // marker formats, outermost first: "{disc}", "{decimal}."
  ArchiveObject original;
  friend bool operator==(const ParagraphStyle&, const ParagraphStyle&) = default;
};

/// A picture or file in the text, at one U+FFFC.
struct TextAttachment {
  QString name;        // the file's own name, sanitised: no path, no control characters
  QByteArray contents; // empty when it is no regular file, or is not understood
  ArchiveObject original;
  friend bool operator==(const TextAttachment&, const TextAttachment&) = default;
};

/// An attribute that is kept and not edited.
struct OtherAttribute {
  QString name;
  ArchiveObject value;
  friend bool operator==(const OtherAttribute&, const OtherAttribute&) = default;
};

/// Each attribute only where it is set.
struct TextAttributes {
  std::optional<TextFont> font;
  std::optional<TextColor> color;
  std::optional<TextColor> background;
  std::optional<qint64> underline;     // 0 none, 1 single, 2 thick, 9 double, with pattern bits
  std::optional<qint64> strikethrough; // likewise
  std::optional<qint64> superscript;   // above 0 raised, below 0 lowered
  std::optional<QString> link;         // as stored: any scheme, perhaps none
  ArchiveObject linkOriginal;          // of link
  std::optional<ParagraphStyle> paragraph;
  std::optional<TextAttachment> attachment;
  /// Sorted by name. One with the name of a known attribute (a pattern as NSColor) is carried until
  /// the known one is set.
  std::vector<OtherAttribute> others;
  friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

struct TextRun {
  qsizetype length = 0; // UTF-16 units, above 0
  TextAttributes attributes;
  friend bool operator==(const TextRun&, const TextRun&) = default;
};

/// The runs cover the text without a gap: their lengths sum to text.size().
struct AttributedText {
  static constexpr char16_t kAttachmentCharacter = u'\xfffc';

  QString text; // UTF-16, lines ended with U+000A
  std::vector<TextRun> runs;

  bool isEmpty() const { return text.isEmpty(); }
  /// Appends text with those attributes; goes on with the last run when they are equal. Attachments
  /// never go on: append them one by one.
  void append(const QString& more, const TextAttributes& attributes);
  /// Makes neighbouring runs of equal attributes one, and drops empty ones.
  void joinEqualRuns();
  friend bool operator==(const AttributedText&, const AttributedText&) = default;
};

} // namespace tockwise
