#include "menu/ui/rich_document.h"

#include "colors/color_contrast.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <QTextBlock>
#include <QTextCursor>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

constexpr int kWidest = 480; // pixels; longer titles go on in a second line
constexpr QSize kLargestPicture(160, 96);
constexpr double kLeastContrast = 4.5;

QTextCharFormat formatOf(const RichAttributes& attributes) {
  QTextCharFormat format;
  if (attributes.font) {
    // PostScript names tell family and style apart with a hyphen: "Helvetica-BoldOblique".
    const QString family = attributes.font->section(u'-', 0, 0);
    const QString style = attributes.font->section(u'-', 1);
    if (family != QStringView(u"Helvetica")) // text in no particular font: the menu's
      format.setFontFamilies({family});
    if (style.contains(u"Bold"))
      format.setFontWeight(QFont::Bold);
    if (style.contains(u"Italic") || style.contains(u"Oblique"))
      format.setFontItalic(true);
  }
  if (attributes.size && *attributes.size > 0)
    format.setFontPointSize(std::min(*attributes.size, 48.0));
  if (attributes.color)
    format.setForeground(QColor::fromRgba(*attributes.color));
  if (attributes.background)
    format.setBackground(QColor::fromRgba(*attributes.background));
  format.setFontUnderline(attributes.underline.value_or(0) != 0);
  format.setFontStrikeOut(attributes.strikethrough.value_or(0) != 0);
  const int script = attributes.superscript.value_or(0);
  if (script != 0)
    format.setVerticalAlignment(script > 0 ? QTextCharFormat::AlignSuperScript
                                           : QTextCharFormat::AlignSubScript);
  if (attributes.link)
    format.setFontUnderline(true);
  return format;
}

/// The picture no larger than titles show it; made smaller while it is decoded where its kind
/// allows that, for a photograph takes long.
QImage titlePicture(const RichAttachment& attachment) {
  QByteArray data = attachment.data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  const QSize size = reader.size(); // before the picture is turned upright
  const bool isTurned = reader.transformation() & QImageIOHandler::TransformationRotate90;
  const QSize most = isTurned ? kLargestPicture.transposed() : kLargestPicture;
  if (size.width() > most.width() || size.height() > most.height())
    reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio).expandedTo({1, 1}));
  return reader.read();
}

void insertAttachment(QTextCursor& cursor, const RichAttachment& attachment) {
  const QImage picture = attachment.data.isEmpty() ? QImage() : titlePicture(attachment);
  if (picture.isNull())
    cursor.insertText(QStringLiteral("[%1]").arg(attachment.name));
  else
    cursor.insertImage(picture);
}

/// color, moved towards text until it can be told from the ground.
QColor readableOn(const QColor& ground, QColor color, const QColor& text) {
  for (int step = 0; step < 5 && contrast(color, ground) < kLeastContrast; ++step)
    color = mixed(color, text, 0.5);
  return color;
}

/// A copy of document in other colours: all of it in the highlight's, or what could not be read on
/// the menu's ground in a readable one. Null when it can be drawn as it is.
std::unique_ptr<QTextDocument> recoloured(const QTextDocument& document, const QColor& text,
                                          const QColor* ground) {
  std::unique_ptr<QTextDocument> copy;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto at = block.begin(); !at.atEnd(); ++at) {
      const QTextFragment fragment = at.fragment();
      const QTextCharFormat format = fragment.charFormat();
      const QColor color = format.foreground().color();
      QTextCharFormat change;
      change.setForeground(ground ? readableOn(*ground, color, text) : text);
      if (!ground)
        change.setBackground(Qt::transparent);
      else if (!format.hasProperty(QTextFormat::ForegroundBrush) ||
               format.hasProperty(QTextFormat::BackgroundBrush) ||
               change.foreground().color() == color)
        continue;
      if (!copy)
        copy.reset(document.clone());
      QTextCursor cursor(copy.get());
      cursor.setPosition(fragment.position());
      cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
      cursor.mergeCharFormat(change);
    }
  }
  return copy;
}

/// Width of a style's item around its text.
int widthAroundText(const QStyle& style, const QStyleOptionMenuItem& option,
                    const QWidget* widget) {
  QStyleOptionMenuItem plain(option);
  plain.text = QStringLiteral("X");
  const int text = option.fontMetrics.horizontalAdvance(u'X');
  const QSize size(text, option.fontMetrics.height());
  return style.sizeFromContents(QStyle::CT_MenuItem, &plain, size, widget).width() - text;
}

} // namespace

std::unique_ptr<QTextDocument> richDocument(const RichText& text, const QFont& font) {
  auto document = std::make_unique<QTextDocument>();
  document->setUndoRedoEnabled(false);
  document->setDocumentMargin(0);
  document->setDefaultFont(font);
  QTextCursor cursor(document.get());
  for (const RichRun& run : text) {
    if (run.attributes.attachment) {
      insertAttachment(cursor, *run.attributes.attachment);
      continue;
    }
    QString line = run.text;
    for (QChar& character : line) {
      if (character.isSpace())
        character = u' ';
    }
    cursor.insertText(line, formatOf(run.attributes));
  }
  if (document->idealWidth() > kWidest)
    document->setTextWidth(kWidest);
  return document;
}

QTextDocument* RichDocuments::document(const QString& reminderUUID, const RichText& text,
                                       const QFont& font) {
  Made* made = m_documents.object(reminderUUID);
  if (!made || made->text != text || made->font != font) {
    made = new Made{text, font, richDocument(text, font)};
    m_documents.insert(reminderUUID, made);
  }
  return made->document.get();
}

QSize richItemSize(const QStyle& style, const QStyleOptionMenuItem& option,
                   const QTextDocument& document, const QWidget* widget) {
  QStyleOptionMenuItem plain(option);
  plain.text = QStringLiteral("X");
  const QSize text(option.fontMetrics.horizontalAdvance(u'X'), option.fontMetrics.height());
  const QSize base = style.sizeFromContents(QStyle::CT_MenuItem, &plain, text, widget);
  const QSizeF content = document.size();
  const double width = std::max(document.textWidth(), document.idealWidth());
  return {
      base.width() - text.width() + int(std::ceil(width)),
      std::max(base.height(), base.height() - text.height() + int(std::ceil(content.height())))};
}

void paintRichItem(const QStyle& style, const QStyleOptionMenuItem& option,
                   const QTextDocument& document, QPainter& painter, const QWidget* widget) {
  QStyleOptionMenuItem frame(option); // highlight, check mark and arrow are the style's
  frame.text.clear();
  style.drawControl(QStyle::CE_MenuItem, &frame, &painter, widget);

  const bool enabled = option.state & QStyle::State_Enabled;
  const bool selected = enabled && (option.state & QStyle::State_Selected);
  const QPalette::ColorGroup group = enabled ? QPalette::Active : QPalette::Disabled;
  const QColor text =
      option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::WindowText);
  const QColor background = option.palette.color(group, QPalette::Window);
  QAbstractTextDocumentLayout::PaintContext context;
  context.palette = option.palette;
  context.palette.setColor(QPalette::Text, text);
  const auto copy = recoloured(document, text, selected ? nullptr : &background);

  const int left = std::max(option.maxIconWidth, 20) + 8;
  const int width = option.rect.width() - widthAroundText(style, option, widget);
  painter.save();
  const QRectF place(option.rect.x() + left,
                     option.rect.y() + (option.rect.height() - document.size().height()) / 2,
                     std::max<double>(width, document.idealWidth()) + 1, document.size().height());
  painter.setClipRect(place.intersected(QRectF(option.rect)));
  painter.translate(place.topLeft());
  (copy ? *copy : document).documentLayout()->draw(&painter, context);
  painter.restore();
}

} // namespace tockwise
