// toHTML(): a page that stands alone. Every text is escaped, and styles are made of numbers and of
// names that were stripped of what has a meaning in a style.
#include "richtext/formats/format_fonts.h"
#include "richtext/formats/html_style_text.h"
#include "richtext/formats/links.h"
#include "richtext/formats/paragraphs.h"
#include "richtext/formats/picture_type.h"
#include "richtext/text_formats.h"

namespace tockwise {
namespace {

constexpr QChar kLineSeparator(u'\x2028');

class HtmlWriter {
 public:
  QString write(const AttributedText& text) {
    m_html = QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">"
                            "<meta name=\"generator\" content=\"Tockwise\">"
                            "<title>Reminder</title></head>\n<body>\n");
    for (const TextParagraph& paragraph : paragraphsOf(text))
      writeParagraph(paragraph);
    return m_html + QStringLiteral("</body></html>");
  }

 private:
  void writeParagraph(const TextParagraph& paragraph) {
    // Qt's reader, and so many programs', would make two lines of an empty one without that word.
    const QString empty =
        paragraph.pieces.empty() ? QStringLiteral("-qt-paragraph-type:empty;") : QString();
    m_html += QStringLiteral("<p style=\"%1\"").arg(empty + paragraphStyleText(paragraph.style));
    if (paragraph.style && paragraph.style->writingDirection == 2)
      m_html += QStringLiteral(" dir=\"rtl\"");
    else if (paragraph.style && paragraph.style->writingDirection == 1)
      m_html += QStringLiteral(" dir=\"ltr\"");
    m_html += u'>';
    const qsizetype start = m_html.size();
    const bool keepsSpaces = needsSpaces(paragraph);
    if (keepsSpaces)
      m_html += QStringLiteral("<span style=\"white-space:pre-wrap\">");
    for (const TextPiece& piece : paragraph.pieces)
      writePiece(piece);
    if (keepsSpaces)
      m_html += QStringLiteral("</span>");
    // The last line break of a paragraph is not shown: an empty line needs one more.
    const bool endsWithBreak =
        !paragraph.pieces.empty() && paragraph.pieces.back().text.back() == kLineSeparator;
    if (m_html.size() == start || endsWithBreak)
      m_html += QStringLiteral("<br>");
    m_html += QStringLiteral("</p>"); // no line feed follows: some readers take one for a space
  }

  // Whether it holds spaces that a page would swallow.
  static bool needsSpaces(const TextParagraph& paragraph) {
    bool afterSpace = true;
    for (const TextPiece& piece : paragraph.pieces) {
      for (const QChar character : piece.text) {
        if (character == u'\t' || (character == u' ' && afterSpace))
          return true;
        afterSpace = character == u' ' || character == kLineSeparator;
      }
    }
    return afterSpace && !paragraph.pieces.empty() && paragraph.pieces.back().text.back() == u' ';
  }

  void writePiece(const TextPiece& piece) {
    const TextAttributes& attributes = *piece.attributes;
    QString closing;
    const auto open = [&](const QString& tag, const QString& rest) {
      m_html += u'<' + tag + rest + u'>';
      closing.prepend(QStringLiteral("</%1>").arg(tag));
    };
    if (attributes.link && isSafeLink(*attributes.link))
      open(QStringLiteral("a"),
           QStringLiteral(" href=\"%1\"").arg(attributes.link->toHtmlEscaped()));
    if (const QString style = characterStyleText(attributes); !style.isEmpty())
      open(QStringLiteral("span"), QStringLiteral(" style=\"%1\"").arg(style));
    if (const qint64 kind = attributes.underline.value_or(0); kind != 0)
      open(QStringLiteral("u"), lineStyleText(kind));
    if (const qint64 kind = attributes.strikethrough.value_or(0); kind != 0)
      open(QStringLiteral("s"), lineStyleText(kind));
    if (const qint64 level = attributes.superscript.value_or(0); level != 0)
      open(level > 0 ? QStringLiteral("sup") : QStringLiteral("sub"), {});
    writeText(piece);
    m_html += closing;
  }

  void writeText(const TextPiece& piece) {
    const QString text = cleanText(piece.text.toString());
    qsizetype done = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
      const bool isPicture =
          text[at] == AttributedText::kAttachmentCharacter && piece.attributes->attachment;
      if (!isPicture && text[at] != kLineSeparator)
        continue;
      m_html += text.mid(done, at - done).toHtmlEscaped();
      if (isPicture)
        writePicture(*piece.attributes->attachment);
      else
        m_html += QStringLiteral("<br class=\"line\">");
      done = at + 1;
    }
    m_html += text.mid(done).toHtmlEscaped();
  }

  void writePicture(const TextAttachment& attachment) {
    const auto picture = portablePicture(attachment.contents, Gif::Keep);
    const QString name = cleanText(attachment.name).toHtmlEscaped();
    if (!picture) {
      m_html += u'[' + name + u']';
      return;
    }
    m_html += QStringLiteral("<img src=\"data:") + picture->type.mimeType +
              QStringLiteral(";base64,") + QString::fromLatin1(picture->bytes.toBase64()) +
              QStringLiteral("\" alt=\"") + name +
              QStringLiteral("\" width=\"%1\" height=\"%2\">")
                  .arg(picture->type.size.width())
                  .arg(picture->type.size.height());
  }

  QString m_html;
};

} // namespace

QString toHTML(const AttributedText& text) {
  return HtmlWriter().write(text);
}

} // namespace tockwise
