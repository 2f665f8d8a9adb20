#include "richtext/text_commands.h"

#include "richtext/character_formats.h"
#include "richtext/format_properties.h"
#include "richtext/typing_format.h"

#include <QTextBlock>
#include <QTextEdit>

namespace tockwise {
namespace {

/// The format of the character after position, which a selection from there begins with.
QTextCharFormat formatAfter(const QTextCursor& cursor, int position) {
  QTextCursor after(cursor);
  after.setPosition(position);
  if (!after.atBlockEnd())
    after.movePosition(QTextCursor::NextCharacter);
  return after.charFormat();
}

QTextCharFormat shownFormat(const QTextEdit& view) {
  const QTextCursor cursor = view.textCursor();
  return cursor.hasSelection() ? formatAfter(cursor, cursor.selectionStart())
                               : view.currentCharFormat();
}

QString addressOf(const QTextCharFormat& format) {
  return format.isAnchor() ? format.anchorHref() : QString();
}

/// The link that the cursor is in or at the edge of.
QString linkAround(const QTextCursor& cursor) {
  const QString after = addressOf(formatAfter(cursor, cursor.selectionStart()));
  return after.isEmpty() ? addressOf(cursor.charFormat()) : after;
}

bool hasColorOfItsOwn(const QTextCharFormat& format) {
  if (format.foreground().style() == Qt::NoBrush)
    return false;
  return !format.hasProperty(LinkColorProperty) ||
         format.foreground().color().rgba() != QRgb(format.intProperty(LinkColorProperty));
}

void merge(QTextEdit& view, const QTextCharFormat& format) {
  view.mergeCurrentCharFormat(format);
}

} // namespace

TextState textState(const QTextEdit& view) {
  const QTextCharFormat format = shownFormat(view);
  TextState state;
  state.isBold = format.fontWeight() >= QFont::DemiBold;
  state.isItalic = format.fontItalic();
  state.isUnderlined = format.underlineStyle() != QTextCharFormat::NoUnderline;
  state.size = format.fontPointSize() > 0 ? format.fontPointSize()
                                          : view.document()->defaultFont().pointSizeF();
  if (hasColorOfItsOwn(format))
    state.color = format.foreground().color();
  state.link = linkAround(view.textCursor());
  return state;
}

void setBold(QTextEdit& view, bool bold) {
  QTextCharFormat format;
  format.setFontWeight(bold ? QFont::Bold : QFont::Normal);
  merge(view, format);
}

void setItalic(QTextEdit& view, bool italic) {
  QTextCharFormat format;
  format.setFontItalic(italic);
  merge(view, format);
}

void setUnderlined(QTextEdit& view, bool underlined) {
  QTextCharFormat format;
  format.setUnderlineStyle(underlined ? QTextCharFormat::SingleUnderline
                                      : QTextCharFormat::NoUnderline);
  merge(view, format);
}

void setFontSize(QTextEdit& view, double points) {
  QTextCharFormat format;
  format.setFontPointSize(points);
  merge(view, format);
}

void setColor(QTextEdit& view, const std::optional<QColor>& color) {
  QTextCharFormat format;
  // Merging can take nothing away: no brush is the theme's text colour.
  format.setForeground(color ? QBrush(*color) : QBrush(Qt::NoBrush));
  merge(view, format);
}

void setAlignment(QTextEdit& view, Qt::Alignment alignment) {
  QTextBlockFormat format;
  format.setAlignment(alignment);
  view.textCursor().mergeBlockFormat(format);
}

void selectLink(QTextEdit& view) {
  QTextCursor cursor = view.textCursor();
  const QString address = linkAround(cursor);
  if (cursor.hasSelection() || address.isEmpty())
    return;
  const QTextBlock block = cursor.block();
  int from = cursor.position();
  int to = from;
  while (from > block.position() && addressOf(formatAfter(cursor, from - 1)) == address)
    --from;
  while (to < block.position() + block.length() - 1 &&
         addressOf(formatAfter(cursor, to)) == address)
    ++to;
  cursor.setPosition(from);
  cursor.setPosition(to, QTextCursor::KeepAnchor);
  view.setTextCursor(cursor);
}

void setLink(QTextEdit& view, const QString& address) {
  QTextCursor cursor = view.textCursor();
  if (cursor.hasSelection()) {
    cursor.mergeCharFormat(linkFormat(address));
    return;
  }
  QString shown = address;
  if (shown.startsWith(QLatin1String("mailto:")))
    shown.remove(0, 7);
  QTextCharFormat format = view.currentCharFormat();
  format.merge(linkFormat(address));
  cursor.insertText(shown, format);
  moveCursor(view, cursor);
}

void removeLink(QTextEdit& view) {
  view.textCursor().mergeCharFormat(linkFormat(QString()));
}

} // namespace tockwise
