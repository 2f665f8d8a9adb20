// Rich texts for tests: by hand in few words, and at random from a seed.
#pragma once

#include "store/archive/attributed_text.h"
#include "support/pictures.h"

#include <QRandomGenerator>

#include <memory>

namespace tockwise {

/// An object of some archive that is never looked into.
inline ArchiveObject opaqueObject(quint64 uid) {
  static const auto owner = std::make_shared<int>(0);
  static const std::shared_ptr<const KeyedArchive> archive(
      owner, reinterpret_cast<const KeyedArchive*>(owner.get()));
  return {archive, uid};
}

/// text with more appended.
inline AttributedText& add(AttributedText& text, const QString& more,
                           const TextAttributes& attributes = {}) {
  text.text += more;
  if (!text.runs.empty() && text.runs.back().attributes == attributes)
    text.runs.back().length += more.size();
  else if (!more.isEmpty())
    text.runs.push_back({more.size(), attributes});
  return text;
}

inline AttributedText textWith(const QString& text, const TextAttributes& attributes = {}) {
  AttributedText made;
  return add(made, text, attributes);
}

inline TextAttributes withFont(const QString& name, double size) {
  TextAttributes attributes;
  attributes.font = TextFont{name, size, {}};
  return attributes;
}

inline TextAttributes withParagraph(const ParagraphStyle& style) {
  TextAttributes attributes;
  attributes.paragraph = style;
  return attributes;
}

class RandomText {
 public:
  explicit RandomText(quint32 seed) : m_random(seed) {}

  AttributedText text() {
    AttributedText made;
    const int runs = m_random.bounded(0, 12);
    for (int i = 0; i < runs; ++i) {
      const TextAttributes run = attributes();
      QString piece = characters(m_random.bounded(1, 20));
      if (run.attachment && m_random.bounded(4) != 0)
        piece = QString(m_random.bounded(1, 3), QChar(AttributedText::kAttachmentCharacter));
      add(made, piece, run);
    }
    return made;
  }

  TextAttributes attributes() {
    TextAttributes made;
    if (maybe())
      made.font = TextFont{oneOf(kFonts), size(), original()};
    if (maybe())
      made.color = color();
    if (maybe())
      made.background = color();
    if (maybe())
      made.underline = oneOf<qint64>({0, 1, 2, 9, 0x101, 0x209, 0x302, 0x401, 0x8001, 0x8000});
    if (maybe())
      made.strikethrough = oneOf<qint64>({0, 1, 2, 9, 0x101});
    if (maybe())
      made.superscript = oneOf<qint64>({-7, -1, 0, 1, 2, 300});
    if (maybe()) {
      made.link = oneOf<QString>({QStringLiteral("https://example.org/?a=1&b=<2>"), QString(),
                                  QStringLiteral("mailto:a@example.org"), QStringLiteral("../up"),
                                  QStringLiteral("x-other:\u00e9 #")});
      made.linkOriginal = original();
    }
    if (maybe())
      made.paragraph = paragraph();
    if (m_random.bounded(8) == 0)
      made.attachment = attachment();
    if (maybe())
      made.others.push_back({QStringLiteral("NSKern"), opaqueObject(m_random.bounded(5))});
    if (maybe())
      made.others.push_back({QStringLiteral("NSShadow"), opaqueObject(m_random.bounded(5))});
    return made;
  }

 private:
  inline static const std::initializer_list<QString> kFonts{
      QStringLiteral("Helvetica"),
      QStringLiteral("Helvetica-BoldOblique"),
      QStringLiteral("HelveticaNeue-CondensedBold"),
      QStringLiteral("TimesNewRomanPS-ItalicMT"),
      QStringLiteral("ArialMT"),
      QStringLiteral(".AppleSystemUIFont"),
      QStringLiteral(".SFNSText-Semibold"),
      QStringLiteral("Zapf-Of-No-Machine-Heavy"),
      QString(),
      QStringLiteral("DejaVuSans-Bold")};

  bool maybe() { return m_random.bounded(3) == 0; }
  template <typename T> T oneOf(std::initializer_list<T> values) {
    return *(values.begin() + m_random.bounded(int(values.size())));
  }
  double length() { return oneOf({0.0, 10.0, 36.5, 0.1, 1.0 / 3, -18.0, 1e6}); }
  double size() { return oneOf({12.0, 9.5, 1.0 / 3, 0.0, 5000.0, 13.1}); }
  ArchiveObject original() {
    return maybe() ? opaqueObject(m_random.bounded(50)) : ArchiveObject();
  }

  TextColor color() { return {m_random.generate(), m_random.bounded(4) == 0, original()}; }

  TextAttachment attachment() {
    TextAttachment made;
    made.name = oneOf<QString>({QStringLiteral("a.png"), QStringLiteral("b.pdf"), QString()});
    made.contents = oneOf<QByteArray>({pngOf({3, 2}), "no picture", QByteArray()});
    made.original = original();
    return made;
  }

  ParagraphStyle paragraph() {
    ParagraphStyle made;
    if (maybe())
      made.alignment = TextAlignment(m_random.bounded(5));
    for (double* field :
         {&made.firstLineHeadIndent, &made.headIndent, &made.tailIndent, &made.paragraphSpacing,
          &made.paragraphSpacingBefore, &made.lineSpacing, &made.lineHeightMultiple,
          &made.minLineHeight, &made.maxLineHeight, &made.defaultTabInterval}) {
      if (maybe())
        *field = length();
    }
    if (maybe()) {
      made.tabStops.emplace();
      for (int i = m_random.bounded(4); i > 0; --i)
        made.tabStops->push_back({length() + i * 20, m_random.bounded(5), original()});
    }
    made.writingDirection = m_random.bounded(3);
    if (maybe())
      made.lists = {QStringLiteral("{disc}"), QStringLiteral("{decimal}.")};
    made.original = original();
    return made;
  }

  QString characters(int count) {
    static const QString kCharacters = QStringLiteral("abcdefg  \t\u00e4\u4e2d\u05d0\u00a0");
    QString made;
    for (int i = 0; i < count; ++i) {
      switch (m_random.bounded(24)) {
      case 0:
      case 1:
        made += oneOf<QString>({QStringLiteral("\n"), QStringLiteral("\n\n"), QStringLiteral("\r"),
                                QStringLiteral("\r\n"), QString(QChar(0x2029)),
                                QString(QChar(0x2028))});
        break;
      case 2:
        made += oneOf<QChar>({QChar(0xd83d), QChar(0xdc00), QChar(0), QChar(0xfffc), QChar(0xfffd),
                              QChar(0xfdd0), QChar(0xfdd1), QChar(0xfeff), QChar(0x0b), QChar(0x0c),
                              QChar(0x85)});
        break;
      case 3:
        made += QStringLiteral("\U0001f600");
        break;
      default:
        made += kCharacters[m_random.bounded(int(kCharacters.size()))];
      }
    }
    return made;
  }

  QRandomGenerator m_random;
};

} // namespace tockwise
