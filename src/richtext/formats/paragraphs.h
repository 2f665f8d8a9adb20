// A text cut into its paragraphs, as writers of other formats need it.
#pragma once

#include "store/archive/attributed_text.h"

#include <QStringView>

#include <vector>

namespace tockwise {

/// Characters of one run. A view into the text, which must outlive it.
struct TextPiece {
  QStringView text;
  const TextAttributes* attributes = nullptr; // never null
};

struct TextParagraph {
  std::vector<TextPiece> pieces;          // without the line feed
  const ParagraphStyle* style = nullptr;  // of its first character; null when there is none
  const TextAttributes* ending = nullptr; // of its line feed; null for the last paragraph
};

/// At least one paragraph; the last one is what follows the last line feed.
std::vector<TextParagraph> paragraphsOf(const AttributedText& text);

/// text with U+FFFD for lone surrogates and for U+0000, and without other control characters than
/// tab and line feed.
QString cleanText(const QString& text);

} // namespace tockwise
