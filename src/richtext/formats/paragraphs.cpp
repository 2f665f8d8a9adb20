#include "richtext/formats/paragraphs.h"

#include <algorithm>

namespace tockwise {
namespace {

class Splitter {
 public:
  Splitter() : m_paragraphs(1) {}

  void add(QStringView text, const TextAttributes& attributes) {
    while (!text.isEmpty()) {
      const qsizetype feed = text.indexOf(u'\n');
      const QStringView piece = text.left(feed < 0 ? text.size() : feed);
      if (!piece.isEmpty()) {
        take(attributes);
        m_paragraphs.back().pieces.push_back({piece, &attributes});
      }
      if (feed < 0)
        return;
      take(attributes);
      m_paragraphs.back().ending = &attributes;
      m_paragraphs.emplace_back();
      text = text.mid(feed + 1);
    }
  }

  std::vector<TextParagraph> finish() { return std::move(m_paragraphs); }

 private:
  void take(const TextAttributes& attributes) {
    TextParagraph& paragraph = m_paragraphs.back();
    if (paragraph.pieces.empty() && attributes.paragraph)
      paragraph.style = &*attributes.paragraph;
  }

  std::vector<TextParagraph> m_paragraphs;
};

bool isClean(QChar character) {
  return !character.isSurrogate() &&
         (character.unicode() >= 0x20 || character == u'\t' || character == u'\n');
}

} // namespace

std::vector<TextParagraph> paragraphsOf(const AttributedText& text) {
  static const TextAttributes kNone;
  Splitter splitter;
  qsizetype at = 0;
  for (const TextRun& run : text.runs) {
    const qsizetype length = std::clamp<qsizetype>(run.length, 0, text.text.size() - at);
    splitter.add(QStringView(text.text).mid(at, length), run.attributes);
    at += length;
  }
  splitter.add(QStringView(text.text).mid(at), kNone);
  return splitter.finish();
}

QString cleanText(const QString& text) {
  if (std::all_of(text.begin(), text.end(), isClean))
    return text;
  QString clean;
  clean.reserve(text.size());
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar character = text[i];
    if (isClean(character)) {
      clean += character;
    } else if (character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
      clean += character;
      clean += text[++i];
    } else if (character.isSurrogate() || character.isNull()) {
      clean += QChar::ReplacementCharacter;
    }
  }
  return clean;
}

} // namespace tockwise
