// Documents of rich text for tests, and how they are edited.
#pragma once

#include "richtext/text_document.h"
#include "support/random_text.h"

namespace tockwise {

inline QString text(const char* latin) {
  return QString::fromLatin1(latin);
}

inline QTextCursor select(QTextDocument& document, int start, int end) {
  QTextCursor cursor(&document);
  cursor.setPosition(start);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  return cursor;
}

/// A document that holds text.
class Document : public QTextDocument {
 public:
  explicit Document(const AttributedText& text) { loadText(text, *this); }
  void merge(int start, int end, const QTextCharFormat& format) {
    select(*this, start, end).mergeCharFormat(format);
  }
  void mergeBlock(int position, const QTextBlockFormat& format) {
    select(*this, position, position).mergeBlockFormat(format);
  }
  TextAttributes attributes(size_t run = 0) const { return textOf(*this).runs.at(run).attributes; }
};

inline QTextCharFormat bold() {
  QTextCharFormat format;
  format.setFontWeight(QFont::Bold);
  return format;
}

inline QTextBlockFormat centred() {
  QTextBlockFormat format;
  format.setAlignment(Qt::AlignHCenter);
  return format;
}

inline TextAttributes everything() {
  TextAttributes attributes = withFont(text("HelveticaNeue"), 13);
  attributes.font->original = opaqueObject(1);
  attributes.color = TextColor{0xff102030, false, opaqueObject(2)};
  attributes.background = TextColor{0xffffff00, false, opaqueObject(3)};
  attributes.underline = 9;
  attributes.strikethrough = 1;
  attributes.superscript = 2;
  attributes.others = {{text("NSKern"), opaqueObject(4)}};
  attributes.paragraph = ParagraphStyle();
  attributes.paragraph->headIndent = 12;
  attributes.paragraph->original = opaqueObject(5);
  return attributes;
}

inline TextAttributes withStyle(double headIndent, quint64 uid) {
  ParagraphStyle style;
  style.headIndent = headIndent;
  style.original = opaqueObject(uid);
  return withParagraph(style);
}

} // namespace tockwise
