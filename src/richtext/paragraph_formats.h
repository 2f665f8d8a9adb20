// Paragraph styles of archived text as Qt's block formats, and back. Archives have lengths in
// points, documents in pixels of 96 to the inch.
#pragma once

#include "store/archive/attributed_text.h"

#include <QStringList>
#include <QTextBlockFormat>

#include <optional>

namespace tockwise {

inline constexpr double kPixelsPerPoint = 96.0 / 72.0;
inline constexpr double kPointsPerPixel = 1 / kPixelsPerPoint;
/// Between tab stops where a paragraph states none.
inline constexpr double kDefaultTabInterval = 28.0; // points

/// The style as it is shown, and as it came.
QTextBlockFormat blockFormat(const std::optional<ParagraphStyle>& style);

/// Whether the block format shows what that style looks like. indentWidth: of the document, in
/// pixels.
bool showsStyle(const QTextBlockFormat& format, const std::optional<ParagraphStyle>& style,
                double indentWidth);

/// The style that a block format stands for: the one that it came with, where it still shows that;
/// else that one with what was changed, without an original.
std::optional<ParagraphStyle> styleOf(const QTextBlockFormat& format, double indentWidth);

/// Where Qt measures the format's tab positions from: the start of the paragraph's first line, in
/// pixels from the left margin of the text. Whoever moves that line and wants the tab stops to stay
/// where they are moves their positions the other way.
double tabOrigin(const QTextBlockFormat& format, double indentWidth);

/// The marker formats of the lists that a paragraph is in, outermost first: "{disc}".
QStringList listMarkers(const QTextBlockFormat& format);
/// Puts a paragraph into lists; the markers in the text are the caller's.
void setListMarkers(QTextBlockFormat& format, const QStringList& markers);

} // namespace tockwise
