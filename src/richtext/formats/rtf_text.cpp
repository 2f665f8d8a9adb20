#include "richtext/formats/rtf_text.h"

#include "richtext/formats/paragraphs.h"
#include "richtext/formats/text_limits.h"

#include <utility>

namespace tockwise {
namespace {

constexpr char kSymbolBullet = '\xb7';

} // namespace

int RtfText::codePageOf(const RtfState& state) const {
  const RtfFont* font = fonts.font(state.characters.font);
  return font && font->codePage != 0 ? font->codePage : m_codePage;
}

void RtfText::addBytes(QByteArrayView bytes, const RtfState& state) {
  if (state.characters.hidden)
    return;
  const RtfFont* font = fonts.font(state.characters.font);
  if (font && font->isSymbol && bytes.size() == 1 && bytes[0] == kSymbolBullet)
    return addCharacter(u'\x2022', state);
  m_bytes += bytes;
}

void RtfText::addCharacter(char16_t character, const RtfState& state) {
  if (state.characters.hidden)
    return;
  if (!m_bytes.isEmpty())
    m_characters += m_pages.decode(std::exchange(m_bytes, {}), codePageOf(state));
  m_characters += QChar(character);
}

void RtfText::flush(const RtfState& state) {
  if (!m_bytes.isEmpty())
    m_characters += m_pages.decode(std::exchange(m_bytes, {}), codePageOf(state));
  if (m_characters.isEmpty())
    return;
  append(cleanText(std::exchange(m_characters, {})), attributesOf(state));
  m_style = state.paragraph;
}

void RtfText::addAttachment(const TextAttachment& attachment, const RtfState& state) {
  flush(state);
  if (state.characters.hidden)
    return;
  TextAttributes attributes = attributesOf(state);
  attributes.attachment = attachment;
  append(QString(QChar(AttributedText::kAttachmentCharacter)), attributes);
  m_style = state.paragraph;
}

void RtfText::endParagraph(const RtfState& state) {
  flush(state);
  append(QStringLiteral("\n"), attributesOf(state));
  closeParagraph(state.paragraph);
}

QString RtfText::decoded(QByteArrayView bytes) {
  return m_pages.decode(bytes, m_codePage);
}

AttributedText RtfText::finish() {
  closeParagraph(m_style);
  return std::exchange(m_text, {});
}

TextAttributes RtfText::attributesOf(const RtfState& state) const {
  const RtfCharacters& characters = state.characters;
  TextAttributes attributes;
  attributes.font = fonts.fontOf(characters);
  attributes.color = colors.color(characters.color);
  attributes.background = colors.color(characters.background);
  if (characters.underline != 0)
    attributes.underline = characters.underline;
  if (characters.strikethrough != 0)
    attributes.strikethrough = characters.strikethrough;
  if (characters.superscript != 0)
    attributes.superscript = characters.superscript;
  if (!state.link.isEmpty())
    attributes.link = state.link;
  return attributes;
}

void RtfText::append(const QString& text, const TextAttributes& attributes) {
  if (m_text.runs.size() + m_paragraph.runs.size() < kMostRuns) {
    m_paragraph.append(text, attributes);
  } else if (!attributes.attachment) {
    appendLimited(m_paragraph, text, m_paragraph.runs.empty() ? TextAttributes() : attributes);
  }
}

void RtfText::closeParagraph(const RtfParagraph& paragraph) {
  const ParagraphStyle style = paragraph.style();
  qsizetype at = 0;
  for (TextRun& run : m_paragraph.runs) {
    if (!(style == ParagraphStyle()))
      run.attributes.paragraph = style;
    appendLimited(m_text, m_paragraph.text.mid(at, run.length), run.attributes);
    at += run.length;
  }
  m_paragraph = {};
}

} // namespace tockwise
