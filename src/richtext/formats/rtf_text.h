// The text that grows while RTF is read: bytes are decoded, paragraphs get their style when they
// end.
#pragma once

#include "richtext/formats/code_page.h"
#include "richtext/formats/rtf_tables.h"

namespace tockwise {

class RtfText {
 public:
  RtfFontTable fonts;
  RtfColorTable colors;

  void setCodePage(int codePage) { m_codePage = codePage; }

  /// Bytes of the document's text, in the code page of their font.
  void addBytes(QByteArrayView bytes, const RtfState& state);
  void addCharacter(char16_t character, const RtfState& state);
  void addAttachment(const TextAttachment& attachment, const RtfState& state);
  void endParagraph(const RtfState& state);
  /// Must be called before the state changes.
  void flush(const RtfState& state);
  /// The text in the document's own code page, for names.
  QString decoded(QByteArrayView bytes);

  AttributedText finish();

 private:
  int codePageOf(const RtfState& state) const;
  TextAttributes attributesOf(const RtfState& state) const;
  void append(const QString& text, const TextAttributes& attributes);
  void closeParagraph(const RtfParagraph& paragraph);

  CodePages m_pages;
  int m_codePage = 1252;
  QByteArray m_bytes;         // not yet decoded
  QString m_characters;       // decoded, all in the same state
  AttributedText m_paragraph; // without its style
  RtfParagraph m_style;       // in effect at the paragraph's last character
  AttributedText m_text;
};

} // namespace tockwise
