// Rich titles in menus: runs as a text document, and menu items drawn with one.
#pragma once

#include "menu/rich_text.h"

#include <QCache>
#include <QFont>
#include <QPalette>
#include <QTextDocument>

#include <memory>

class QPainter;
class QStyle;
class QStyleOptionMenuItem;
class QWidget;

namespace tockwise {

/// text as a document without margin, built run by run (no markup is ever parsed). Attributes
/// that a run lacks are those of font. Pictures are made smaller than a menu item should be;
/// line breaks become blanks.
std::unique_ptr<QTextDocument> richDocument(const RichText& text, const QFont& font);

/// Main thread. Documents of the items seen lately, made once for each text.
class RichDocuments {
 public:
  /// The document, valid until the next call.
  QTextDocument* document(const QString& reminderUUID, const RichText& text, const QFont& font);
  void clear() { m_documents.clear(); }

 private:
  struct Made {
    RichText text;
    QFont font;
    std::unique_ptr<QTextDocument> document;
  };
  QCache<QString, Made> m_documents{500};
};

/// Size of a menu item that shows document, given what the style makes of its plain option.
QSize richItemSize(const QStyle& style, const QStyleOptionMenuItem& option,
                   const QTextDocument& document, const QWidget* widget);

/// Draws the item with document in the place of its text. Highlighted text takes the highlight's
/// colour, and a colour that could not be read on the menu's background the menu's own.
void paintRichItem(const QStyle& style, const QStyleOptionMenuItem& option,
                   const QTextDocument& document, QPainter& painter, const QWidget* widget);

} // namespace tockwise
