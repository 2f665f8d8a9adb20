// Makes a reminder's rich text fit to be read in an alert: whatever colours, links and pictures it
// came with.
#pragma once

#include <QPalette>
#include <QSize>
#include <QTextDocument>

namespace tockwise {

/// Schemes of the addresses that a text may open.
bool isOpenable(const QUrl& address);

/// Leaves links only where they may be opened. The text stays.
void keepOpenableLinks(QTextDocument& document);

/// Colours what is written without a colour in the palette's text and link colours, and moves what
/// could not be read on its ground towards them. May be done again with another palette.
void recolour(QTextDocument& document, const QPalette& palette);

/// Shows pictures that are larger than most (pixels) smaller, in their proportions.
void fitPictures(QTextDocument& document, QSize most);

} // namespace tockwise
