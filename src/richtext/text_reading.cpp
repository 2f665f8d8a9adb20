// From a QTextDocument back to rich text.
#include "richtext/character_formats.h"
#include "richtext/format_properties.h"
#include "richtext/paragraph_formats.h"
#include "richtext/text_document.h"

#include <QBuffer>
#include <QHash>
#include <QImage>
#include <QTextBlock>

namespace tockwise {
namespace {

/// A character format as attributes, made once for each of a document's formats.
struct ReadFormat {
  TextAttributes attributes;
  QString lineEnd;
  char16_t standsFor = QChar::ReplacementCharacter;
  bool isObject = false;
};

/// Formats that are read as something else than they are count down from here.
constexpr int kNoIndex = -2;

class DocumentReader {
 public:
  DocumentReader(const QTextDocument& document, int start, int end)
      : m_document(document), m_start(start), m_end(end) {
    const QFont font = document.defaultFont();
    m_defaultSize = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * kPointsPerPixel;
  }

  AttributedText read() {
    for (QTextBlock block = m_document.findBlock(m_start);
         block.isValid() && block.position() < m_end; block = block.next())
      readBlock(block);
    return std::move(m_text);
  }

 private:
  /// The style that is written to every run of a paragraph; nothing: each run's own.
  struct Override {
    bool isOn = false;
    std::optional<ParagraphStyle> style;
  };

  void readBlock(const QTextBlock& block) {
    const QTextBlock next = block.next();
    m_override = overrideOf(block, next);
    ++m_blockCount;
    for (auto at = block.begin(); !at.atEnd(); ++at) {
      const QTextFragment fragment = at.fragment();
      const int from = std::max(m_start, fragment.position());
      const int to = std::min(m_end, fragment.position() + fragment.length());
      if (from >= to)
        continue;
      const ReadFormat& format = formatOf(fragment.charFormatIndex(), fragment.charFormat());
      const QString text = fragment.text();
      take(QStringView(text).mid(from - fragment.position(), to - from), format,
           fragment.charFormatIndex());
    }
    const int separator = block.position() + block.length() - 1;
    if (next.isValid() && separator >= m_start && separator < m_end) {
      takeLineEnd(formatOf(next.charFormatIndex(), next.charFormat()), next.charFormatIndex());
    }
  }

  /// A paragraph that shows what its first character says is as it came.
  Override overrideOf(const QTextBlock& block, const QTextBlock& next) {
    std::optional<ParagraphStyle> first;
    if (block.length() > 1) {
      const QTextFragment fragment = block.begin().fragment();
      first = formatOf(fragment.charFormatIndex(), fragment.charFormat()).attributes.paragraph;
    } else if (next.isValid()) {
      first = formatOf(next.charFormatIndex(), next.charFormat()).attributes.paragraph;
    }
    const QTextBlockFormat format = block.blockFormat();
    const double indentWidth = m_document.indentWidth();
    if (showsStyle(format, first, indentWidth))
      return {};
    return {true, styleOf(format, indentWidth)};
  }

  const ReadFormat& formatOf(int index, const QTextCharFormat& format) {
    const auto known = m_formats.constFind(index);
    if (known != m_formats.constEnd())
      return *known;
    ReadFormat read;
    read.attributes = attributesOf(format, m_defaultSize);
    read.isObject = format.objectType() != QTextFormat::NoObject;
    if (read.isObject && !read.attributes.attachment)
      read.attributes.attachment = foreignPicture(format.toImageFormat());
    if (!read.isObject && format.hasProperty(QTextFormat::ImageName))
      read.attributes.attachment.reset(); // written after a picture, with its format
    read.lineEnd = format.hasProperty(LineEndProperty) ? format.stringProperty(LineEndProperty)
                                                       : QStringLiteral("\n");
    if (format.hasProperty(StandsForProperty))
      read.standsFor = char16_t(format.intProperty(StandsForProperty));
    return *m_formats.insert(index, read);
  }

  /// A picture that was put into the document without us.
  std::optional<TextAttachment> foreignPicture(const QTextImageFormat& format) const {
    const QVariant resource =
        m_document.resource(QTextDocument::ImageResource, QUrl(format.name()));
    const QImage image = resource.value<QImage>();
    if (image.isNull())
      return std::nullopt;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return TextAttachment{QStringLiteral("image.png"), buffer.data(), {}};
  }

  void take(QStringView text, const ReadFormat& format, int index) {
    QString taken = text.toString();
    if (format.standsFor != QChar::ReplacementCharacter)
      taken.replace(QChar(QChar::ReplacementCharacter), QChar(format.standsFor));
    append(taken, format.attributes, index);
  }

  /// A paragraph that is begun right after a picture has the picture's format.
  void takeLineEnd(const ReadFormat& format, int index) {
    if (!format.isObject)
      return append(format.lineEnd, format.attributes, index);
    TextAttributes attributes = format.attributes;
    attributes.attachment.reset();
    append(format.lineEnd, attributes, kNoIndex - index);
  }

  /// index: of the format that attributes were read from.
  void append(const QString& text, const TextAttributes& attributes, int index) {
    const bool isLikeLast = index == m_lastIndex &&
                            (m_blockCount == m_lastBlock || !(m_override.isOn || m_wasOverride));
    m_lastIndex = index;
    m_lastBlock = m_blockCount;
    m_wasOverride = m_override.isOn;
    m_text.text += text;
    if (isLikeLast) {
      m_text.runs.back().length += text.size();
      return;
    }
    TextAttributes own = attributes;
    if (m_override.isOn)
      own.paragraph = m_override.style;
    if (!m_text.runs.empty() && m_text.runs.back().attributes == own)
      m_text.runs.back().length += text.size();
    else
      m_text.runs.push_back({text.size(), std::move(own)});
  }

  const QTextDocument& m_document;
  const int m_start;
  const int m_end; // not read any more
  double m_defaultSize = 12;
  QHash<int, ReadFormat> m_formats;
  Override m_override;
  AttributedText m_text;
  int m_blockCount = 0;
  int m_lastIndex = -1;
  int m_lastBlock = 0;
  bool m_wasOverride = false;
};

} // namespace

AttributedText textOf(const QTextDocument& document) {
  // Every document ends with a block of its own, whose end is not part of the text.
  return DocumentReader(document, 0, document.characterCount() - 1).read();
}

AttributedText textOf(const QTextCursor& selection) {
  if (selection.isNull() || !selection.hasSelection())
    return {};
  return DocumentReader(*selection.document(), selection.selectionStart(), selection.selectionEnd())
      .read();
}

} // namespace tockwise
