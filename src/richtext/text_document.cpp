#include "richtext/text_document.h"

#include "richtext/character_formats.h"
#include "richtext/format_properties.h"
#include "richtext/paragraph_formats.h"
#include "store/archive/text_archive.h"

#include <QTextBlock>
#include <QTextOption>

#include <algorithm>

namespace tockwise {
namespace {

// Characters that Qt takes for ends of its frames.
constexpr char16_t kBeginningOfFrame = u'\xfdd0';
constexpr char16_t kEndOfFrame = u'\xfdd1';

/// The length of the line end at position, 0 when there is none. A carriage return and a line feed
/// are one, when one run has both.
qsizetype lineEndAt(QStringView text, qsizetype position) {
  const QChar character = text[position];
  if (character == u'\r')
    return position + 1 < text.size() && text[position + 1] == u'\n' ? 2 : 1;
  return character == u'\n' || character == QChar::ParagraphSeparator ? 1 : 0;
}

/// Whether the character at position is shown as U+FFFD, since a document cannot hold it.
bool isUnshowable(QStringView text, qsizetype position) {
  const QChar character = text[position];
  if (character.isLowSurrogate())
    return position == 0 || !text[position - 1].isHighSurrogate();
  if (character.isHighSurrogate())
    return position + 1 == text.size() || !text[position + 1].isLowSurrogate();
  return character.isNull() || character == kBeginningOfFrame || character == kEndOfFrame;
}

/// Puts runs into a document, piece by piece.
class Writer {
 public:
  /// unstyled: the format of paragraphs whose style the text does not tell.
  Writer(QTextCursor& cursor, const AttributedText& text, QTextBlockFormat unstyled)
      : m_cursor(cursor), m_text(text), m_unstyled(std::move(unstyled)) {}

  void write() {
    qsizetype start = 0;
    for (const TextRun& run : m_text.runs) {
      const qsizetype length = std::min(run.length, m_text.text.size() - start);
      if (length <= 0)
        break;
      writeRun(QStringView(m_text.text).mid(start, length), start, run.attributes);
      start += length;
    }
    // Text beyond the runs has no attributes.
    if (start < m_text.text.size())
      writeRun(QStringView(m_text.text).mid(start), start, {});
  }

 private:
  void writeRun(QStringView text, qsizetype offset, const TextAttributes& attributes) {
    const QTextCharFormat format = characterFormat(attributes);
    qsizetype plain = 0; // where what is not yet written starts
    for (qsizetype i = 0; i < text.size(); ++i) {
      const qsizetype lineEnd = lineEndAt(text, i);
      const bool isAttachment =
          attributes.attachment && text[i] == AttributedText::kAttachmentCharacter;
      const bool isReplaced = isUnshowable(text, i);
      if (lineEnd == 0 && !isAttachment && !isReplaced)
        continue;
      insert(text.mid(plain, i - plain).toString(), format);
      if (lineEnd > 0)
        writeLineEnd(text.mid(i, lineEnd), offset + i + lineEnd, format);
      else if (isAttachment)
        writeAttachment(attributes, format);
      else
        writeReplaced(text[i], format);
      i += std::max<qsizetype>(lineEnd, 1) - 1;
      plain = i + 1;
    }
    insert(text.mid(plain).toString(), format);
  }

  void insert(const QString& text, const QTextCharFormat& format) {
    if (!text.isEmpty())
      m_cursor.insertText(text, format);
  }

  void writeLineEnd(QStringView lineEnd, qsizetype next, QTextCharFormat format) {
    if (lineEnd != u"\n")
      format.setProperty(LineEndProperty, lineEnd.toString());
    // The style of what follows; after the last line end, that of the line that it ends.
    const auto style = styleAt(std::min(next, m_text.text.size() - 1));
    m_cursor.insertBlock(style ? blockFormat(style) : m_unstyled, format);
  }

  void writeAttachment(const TextAttributes& attributes, QTextCharFormat format) {
    format.merge(attachmentFormat(*attributes.attachment, *m_cursor.document()));
    setOrigin(format, attributes);
    m_cursor.insertText(QString(QChar::ObjectReplacementCharacter), format);
  }

  void writeReplaced(QChar character, QTextCharFormat format) {
    format.setProperty(StandsForProperty, int(character.unicode()));
    m_cursor.insertText(QString(QChar::ReplacementCharacter), format);
  }

  /// Positions are asked for in ascending order.
  std::optional<ParagraphStyle> styleAt(qsizetype position) {
    while (m_styleRun < m_text.runs.size() &&
           m_styleStart + m_text.runs[m_styleRun].length <= position) {
      m_styleStart += m_text.runs[m_styleRun].length;
      ++m_styleRun;
    }
    return m_styleRun < m_text.runs.size() ? m_text.runs[m_styleRun].attributes.paragraph
                                           : std::nullopt;
  }

  QTextCursor& m_cursor;
  const AttributedText& m_text;
  QTextBlockFormat m_unstyled;
  size_t m_styleRun = 0;
  qsizetype m_styleStart = 0;
};

std::optional<ParagraphStyle> firstStyle(const AttributedText& text) {
  return text.runs.empty() ? std::nullopt : text.runs.front().attributes.paragraph;
}

bool hasStyles(const AttributedText& text) {
  return std::any_of(text.runs.begin(), text.runs.end(),
                     [](const TextRun& run) { return run.attributes.paragraph.has_value(); });
}

/// Qt has one interval for a whole document: that of the first paragraph that states one.
void setTabInterval(const AttributedText& text, QTextDocument& document) {
  double interval = kDefaultTabInterval;
  for (const TextRun& run : text.runs) {
    if (run.attributes.paragraph && run.attributes.paragraph->defaultTabInterval >= 1) {
      interval = run.attributes.paragraph->defaultTabInterval;
      break;
    }
  }
  QTextOption option = document.defaultTextOption();
  option.setTabStopDistance(interval * kPixelsPerPoint);
  document.setDefaultTextOption(option);
}

bool hasLineEnd(const QString& text) {
  return std::any_of(text.begin(), text.end(), [](QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator;
  });
}

} // namespace

void loadText(const AttributedText& text, QTextDocument& document) {
  const bool undo = document.isUndoRedoEnabled();
  document.setUndoRedoEnabled(false);
  document.clear();
  setTabInterval(text, document);
  QTextCursor cursor(&document);
  cursor.beginEditBlock();
  cursor.setBlockFormat(blockFormat(firstStyle(text)));
  cursor.setBlockCharFormat(text.runs.empty() ? QTextCharFormat()
                                              : characterFormat(text.runs.front().attributes));
  Writer(cursor, text, QTextBlockFormat()).write();
  cursor.endEditBlock();
  document.setUndoRedoEnabled(undo);
  document.setModified(false);
}

bool loadArchivedText(const QByteArray& archive, QTextDocument& document) {
  const Result<AttributedText> text = unarchiveTextStorage(archive);
  if (text)
    loadText(text.value(), document);
  return text.ok();
}

void insertText(QTextCursor& cursor, const AttributedText& text) {
  cursor.beginEditBlock();
  cursor.removeSelectedText();
  const int block = cursor.blockNumber();
  const QTextBlockFormat around = cursor.blockFormat();
  const bool isRestEmpty = cursor.atBlockEnd();
  if (firstStyle(text) && cursor.atBlockStart() && (isRestEmpty || hasLineEnd(text.text)))
    cursor.setBlockFormat(blockFormat(firstStyle(text)));
  Writer(cursor, text, hasStyles(text) ? QTextBlockFormat() : around).write();
  // The rest of the paragraph stays as it was, unless it goes on after inserted text.
  if (cursor.blockNumber() != block && !isRestEmpty && cursor.atBlockStart())
    cursor.setBlockFormat(around);
  cursor.endEditBlock();
}

} // namespace tockwise
