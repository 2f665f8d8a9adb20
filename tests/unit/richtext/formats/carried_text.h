// What other formats carry of a text, and texts at random that they carry whole.
#pragma once

#include "store/archive/attributed_text.h"
#include "support/pictures.h"

#include <QRandomGenerator>

#include <cmath>

namespace tockwise {

inline const QChar kPicture(AttributedText::kAttachmentCharacter);

enum class Format { Rtf, Html };

inline double roundedTo(double value, int partsOfOne) {
  return std::round(value * partsOfOne) / partsOfOne;
}

// Lengths are twips in RTF; in HTML they have seven digits.
inline ParagraphStyle carriedStyle(const ParagraphStyle& style, Format format) {
  constexpr int kTwips = 20;
  ParagraphStyle carried = style;
  carried.original = {};
  carried.lists.clear();
  carried.tailIndent = std::min(0.0, style.tailIndent);
  if (style.tabStops && style.tabStops->empty())
    carried.tabStops.reset();
  for (double* length :
       {&carried.firstLineHeadIndent, &carried.headIndent, &carried.tailIndent,
        &carried.paragraphSpacing, &carried.paragraphSpacingBefore, &carried.lineSpacing,
        &carried.minLineHeight, &carried.maxLineHeight, &carried.defaultTabInterval})
    *length = roundedTo(*length, kTwips);
  if (format == Format::Html) {
    carried.lineSpacing = 0;
    if (carried.minLineHeight != carried.maxLineHeight)
      carried.maxLineHeight = 0;
  }
  if (carried.tabStops) {
    for (TextTab& tab : *carried.tabStops)
      tab = {roundedTo(tab.location, kTwips), tab.alignment, {}};
  }
  return carried;
}

inline TextAttributes carriedAttributes(const TextAttributes& attributes) {
  TextAttributes carried = attributes;
  carried.others.clear();
  carried.linkOriginal = {};
  carried.paragraph.reset();
  if (carried.font)
    carried.font = TextFont{carried.font->name, roundedTo(carried.font->size, 2), {}};
  for (auto* color : {&carried.color, &carried.background}) {
    if (*color)
      *color = (*color)->followsTheme ? std::nullopt
                                      : std::optional(TextColor{(*color)->argb, false, {}});
  }
  for (auto* number : {&carried.underline, &carried.strikethrough, &carried.superscript}) {
    if (*number == 0)
      number->reset();
  }
  if (carried.attachment)
    carried.attachment->original = {};
  return carried;
}

/// The text as a reader of that format gives it back after a writer of it.
inline AttributedText carriedText(const AttributedText& text, Format format) {
  AttributedText carried;
  std::optional<ParagraphStyle> style; // of the paragraph: that of its first character
  bool isStart = true;
  qsizetype at = 0;
  for (const TextRun& run : text.runs) {
    for (const QChar character : text.text.mid(at, run.length)) {
      if (isStart) {
        style.reset();
        if (run.attributes.paragraph)
          style = carriedStyle(*run.attributes.paragraph, format);
        if (style == ParagraphStyle())
          style.reset();
      }
      isStart = character == u'\n';
      TextAttributes attributes = carriedAttributes(run.attributes);
      if (isStart && format == Format::Html)
        attributes = {}; // a line feed has no form of its own
      attributes.paragraph = style;
      carried.append(QString(character), attributes);
    }
    at += run.length;
  }
  return carried;
}

/// Seeded texts of which every attribute can be carried by format.
class RandomCarried {
 public:
  RandomCarried(quint32 seed, Format format) : m_random(seed), m_format(format) {}

  AttributedText text() {
    AttributedText made;
    for (int paragraphs = m_random.bounded(6); paragraphs >= 0; --paragraphs) {
      std::optional<ParagraphStyle> style;
      if (maybe())
        style = paragraph();
      if (style == ParagraphStyle())
        style.reset();
      for (int runs = m_random.bounded(5); runs > 0; --runs)
        addRun(made, style);
      if (paragraphs > 0)
        made.append(QStringLiteral("\n"), with(attributes(), style));
    }
    return made;
  }

 private:
  template <typename T> T oneOf(std::initializer_list<T> values) {
    return *(values.begin() + m_random.bounded(int(values.size())));
  }
  bool maybe() { return m_random.bounded(3) == 0; }
  double length() { return m_random.bounded(1, 2000) / 20.0; }

  static TextAttributes with(TextAttributes attributes,
                             const std::optional<ParagraphStyle>& style) {
    attributes.paragraph = style;
    return attributes;
  }

  void addRun(AttributedText& text, const std::optional<ParagraphStyle>& style) {
    TextAttributes run = with(attributes(), style);
    if (m_random.bounded(10) == 0) {
      run.attachment = TextAttachment{QStringLiteral("b\u00fc {%1}.png").arg(m_random.bounded(9)),
                                      pngOf({1 + m_random.bounded(9), 3}),
                                      {}};
      text.append(QString(kPicture), run);
      return;
    }
    static const QString kCharacters =
        QStringLiteral("ab<>&\"'\\{};  \t\u00e4\u20ac\u4e2d\u05d0\u00a0\u2028\ufffd9?");
    QString piece;
    for (int i = m_random.bounded(1, 15); i > 0; --i)
      piece += m_random.bounded(12) == 0
                   ? QStringLiteral("\U0001f600")
                   : QString(kCharacters[m_random.bounded(int(kCharacters.size()))]);
    text.append(piece, run);
  }

  TextColor color() {
    const quint32 argb = m_random.generate();
    return {maybe() ? argb : argb | 0xff000000, false, {}};
  }

  TextAttributes attributes() {
    TextAttributes made;
    if (maybe())
      made.font = TextFont{
          oneOf<QString>({QStringLiteral("Helvetica"), QStringLiteral("Helvetica-BoldOblique"),
                          QStringLiteral("HelveticaNeue-CondensedBold"),
                          QStringLiteral("TimesNewRomanPS-ItalicMT"), QStringLiteral("ArialMT"),
                          QStringLiteral(".SFNSText-Semibold"), QStringLiteral("Avenir-Light"),
                          QStringLiteral("Zapf-Of-No-Machine-Heavy"),
                          QStringLiteral("DejaVuSans-Bold")}),
          m_random.bounded(1, 200) / 2.0,
          {}};
    if (maybe())
      made.color = color();
    if (maybe())
      made.background = color();
    if (made.background && made.background->argb >> 24 == 0)
      made.background->argb |= 0xff000000; // one that cannot be seen is none
    if (maybe() && m_format == Format::Rtf)
      made.underline = oneOf<qint64>({1, 2, 9, 0x101, 0x201, 0x301, 0x402, 0x8001});
    else if (maybe())
      made.underline = oneOf<qint64>({1, 2, 9, 0x101, 0x201});
    if (maybe())
      made.strikethrough = oneOf<qint64>({1, 9});
    if (maybe())
      made.superscript = oneOf<qint64>({-1, 1});
    if (maybe())
      made.link = oneOf<QString>({QStringLiteral("https://example.org/?a=1&b=%3C2%3E"),
                                  QStringLiteral("mailto:a@example.org"),
                                  QStringLiteral("http://example.org/a\"b\\c")});
    return made;
  }

  ParagraphStyle paragraph() {
    ParagraphStyle made;
    if (maybe())
      made.alignment = TextAlignment(m_random.bounded(5));
    for (double* field : {&made.firstLineHeadIndent, &made.headIndent, &made.paragraphSpacing,
                          &made.paragraphSpacingBefore, &made.defaultTabInterval}) {
      if (maybe())
        *field = length();
    }
    if (maybe())
      made.tailIndent = -length();
    if (maybe()) {
      made.lineHeightMultiple = m_random.bounded(1, 8) * 0.25 + 1;
    } else if (maybe()) {
      made.minLineHeight = length();
      made.maxLineHeight = maybe() ? made.minLineHeight : 0;
    }
    if (maybe() && m_format == Format::Rtf)
      made.lineSpacing = length();
    if (maybe()) {
      made.tabStops.emplace();
      for (int i = m_random.bounded(1, 5); i > 0; --i)
        made.tabStops->push_back({length(), m_random.bounded(3), {}});
    }
    made.writingDirection = m_random.bounded(3);
    return made;
  }

  QRandomGenerator m_random;
  Format m_format;
};

/// A text of nothing but these attachments.
inline AttributedText pictureText(const std::vector<TextAttachment>& attachments) {
  AttributedText text;
  for (const TextAttachment& attachment : attachments) {
    TextAttributes attributes;
    attributes.attachment = attachment;
    text.append(QString(kPicture), attributes);
  }
  return text;
}

/// The attributes of the first place where the text has that piece.
inline TextAttributes attributesAt(const AttributedText& text, QStringView piece) {
  const qsizetype wanted = text.text.indexOf(piece);
  qsizetype at = 0;
  for (const TextRun& run : text.runs) {
    at += run.length;
    if (wanted >= 0 && wanted < at)
      return run.attributes;
  }
  return {};
}

} // namespace tockwise
