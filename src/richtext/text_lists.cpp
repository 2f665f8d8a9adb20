#include "richtext/text_lists.h"

#include "richtext/paragraph_formats.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace tockwise {
namespace {

// Where the marker and the text of an item begin, in points.
constexpr double kMarkerPlace = 11;
constexpr double kTextPlace = 36;

struct Marker {
  ListKind kind = ListKind::None;
  int length = 0; // with both tabs
  int number = 0;
};

/// As much of a paragraph, which may be long, as a marker can take.
QString beginning(const QTextBlock& block) {
  constexpr int kLongest = 10;
  QString text;
  const int end = block.isValid() ? block.position() + std::min(block.length() - 1, kLongest) : 0;
  for (int at = block.position(); at < end; ++at)
    text += block.document()->characterAt(at);
  return text;
}

Marker markerOf(const QTextBlock& block) {
  static const QRegularExpression form(QStringLiteral("^\\t(?:([•◦▪▫‣⁃*–-])|(\\d{1,6})[.)])\\t"));
  const QRegularExpressionMatch match = form.match(beginning(block));
  if (!match.hasMatch())
    return {};
  const bool isBullet = match.hasCaptured(1) && match.capturedLength(1) > 0;
  return {isBullet ? ListKind::Bullets : ListKind::Numbers, int(match.capturedLength()),
          match.captured(2).toInt()};
}

QString markerText(ListKind kind, int number) {
  return kind == ListKind::Bullets ? QStringLiteral("\t•\t")
                                   : QStringLiteral("\t%1.\t").arg(number);
}

QStringList markerFormats(ListKind kind) {
  switch (kind) {
  case ListKind::Bullets:
    return {QStringLiteral("{disc}")};
  case ListKind::Numbers:
    return {QStringLiteral("{decimal}.")};
  case ListKind::None:
    break;
  }
  return {};
}

void formatItem(QTextCursor& cursor, ListKind kind) {
  QTextBlockFormat format = cursor.blockFormat();
  const bool isItem = kind != ListKind::None;
  const double head = isItem ? kTextPlace * kPixelsPerPoint : 0;
  format.setIndent(0);
  format.setLeftMargin(head);
  format.setTextIndent(-head);
  QList<QTextOption::Tab> tabs;
  if (isItem)
    tabs = {{kMarkerPlace * kPixelsPerPoint, QTextOption::LeftTab},
            {kTextPlace * kPixelsPerPoint, QTextOption::LeftTab}};
  format.setTabPositions(tabs);
  setListMarkers(format, markerFormats(kind));
  cursor.setBlockFormat(format);
}

/// The format of an item's marker: that of the text, without what marks words.
QTextCharFormat markerFormat(QTextCharFormat format) {
  if (format.isAnchor())
    format.clearForeground();
  for (const int property :
       {QTextFormat::IsAnchor, QTextFormat::AnchorHref, QTextFormat::TextUnderlineStyle,
        QTextFormat::FontStrikeOut, QTextFormat::BackgroundBrush, QTextFormat::ObjectType})
    format.clearProperty(property);
  return format;
}

void removeMarker(QTextCursor& cursor, const QTextBlock& block) {
  const Marker marker = markerOf(block);
  cursor.setPosition(block.position());
  cursor.setPosition(block.position() + marker.length, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
}

void insertMarker(QTextCursor& cursor, const QTextBlock& block, ListKind kind, int number) {
  cursor.setPosition(block.position());
  if (block.length() > 1)
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
  const QTextCharFormat format = markerFormat(cursor.charFormat());
  cursor.setPosition(block.position());
  cursor.insertText(markerText(kind, number), format);
}

/// Numbers the items from block on, up to the end of their list.
void numberFrom(QTextBlock block, int number) {
  for (; block.isValid(); block = block.next(), ++number) {
    const Marker marker = markerOf(block);
    if (marker.kind != ListKind::Numbers || marker.number == number)
      return;
    QTextCursor cursor(block);
    cursor.setPosition(block.position() + 1);
    cursor.setPosition(block.position() + marker.length - 1, QTextCursor::KeepAnchor);
    cursor.insertText(QStringLiteral("%1.").arg(number));
  }
}

int numberBefore(const QTextBlock& block) {
  const Marker before = markerOf(block.previous());
  return before.kind == ListKind::Numbers ? before.number : 0;
}

void setItem(QTextCursor& cursor, const QTextBlock& block, ListKind kind) {
  const ListKind was = markerOf(block).kind;
  if (was != ListKind::None)
    removeMarker(cursor, block);
  if (kind != ListKind::None)
    insertMarker(cursor, block, kind, numberBefore(block) + 1);
  cursor.setPosition(block.position());
  if (was != kind)
    formatItem(cursor, kind);
}

} // namespace

ListKind listKindAt(const QTextCursor& cursor) {
  return markerOf(cursor.block()).kind;
}

void setList(const QTextCursor& selection, ListKind kind) {
  QTextDocument* document = selection.document();
  const QTextBlock first = document->findBlock(selection.selectionStart());
  // A selection that ends where a paragraph begins has nothing of it.
  const int end = std::max(selection.selectionStart(), selection.selectionEnd() - 1);
  const int last = document->findBlock(end).blockNumber();
  QTextCursor cursor(selection);
  cursor.beginEditBlock();
  QTextBlock block = first;
  for (; block.isValid() && block.blockNumber() <= last; block = block.next())
    setItem(cursor, block, kind);
  if (block.isValid())
    numberFrom(block, numberBefore(block) + 1);
  cursor.endEditBlock();
}

bool continueList(QTextCursor& cursor) {
  const Marker marker = markerOf(cursor.block());
  if (marker.kind == ListKind::None || cursor.hasSelection() ||
      cursor.positionInBlock() < marker.length)
    return false;
  if (cursor.block().length() - 1 == marker.length)
    return leaveList(cursor);
  const QTextCharFormat format = cursor.charFormat();
  cursor.beginEditBlock();
  cursor.insertBlock();
  cursor.insertText(markerText(marker.kind, marker.number + 1), markerFormat(format));
  if (marker.kind == ListKind::Numbers)
    numberFrom(cursor.block().next(), marker.number + 2);
  cursor.setCharFormat(format.isAnchor() ? markerFormat(format) : format);
  cursor.endEditBlock();
  return true;
}

bool leaveList(QTextCursor& cursor) {
  const Marker marker = markerOf(cursor.block());
  if (marker.kind == ListKind::None || cursor.hasSelection() ||
      cursor.positionInBlock() != marker.length)
    return false;
  const QTextBlock block = cursor.block();
  cursor.beginEditBlock();
  removeMarker(cursor, block);
  formatItem(cursor, ListKind::None);
  if (block.next().isValid())
    numberFrom(block.next(), 1);
  cursor.endEditBlock();
  return true;
}

} // namespace tockwise
