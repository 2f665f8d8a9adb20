// What the elements of HTML mean for the text in them.
#pragma once

#include "richtext/formats/html_style.h"
#include "richtext/formats/html_tokens.h"

namespace tockwise {

enum class HtmlElementKind {
  Inline,  // part of a line
  Block,   // stands in lines of its own
  Row,     // of a table
  Cell,    // of a row
  Void,    // has no contents and no end tag
  Skipped, // whose contents are not shown
};

HtmlElementKind htmlElementKind(const QString& name);

/// Whether an open element of the name open ends where one of the name next starts.
bool htmlElementEnds(const QString& open, const QString& next);

/// Whether a search for the open element that ends there goes no further than one of this name.
bool htmlElementEncloses(const QString& name);

/// Applies what the element's name, its attributes and its style attribute say.
void applyHtmlElement(const HtmlToken& tag, HtmlStyle& style);

/// The marker of the number-th item (from 1) of the innermost list of lists.
QString htmlListMarker(const QStringList& lists, int number);

} // namespace tockwise
