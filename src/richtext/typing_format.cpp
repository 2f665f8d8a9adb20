#include "richtext/typing_format.h"

#include "richtext/character_formats.h"
#include "richtext/pending_content.h"

#include <QTextBlock>
#include <QTextEdit>

namespace tockwise {
namespace {

void clearProperties(QTextCharFormat& format, std::initializer_list<int> properties) {
  for (const int property : properties)
    format.clearProperty(property);
}

bool isPicture(const QTextCharFormat& format) {
  return format.objectType() != QTextFormat::NoObject || PendingContent::isPlace(format);
}

/// Whether the link of the character before the cursor does not go on after it.
bool isAtLinkEnd(const QTextCursor& cursor, const QTextCharFormat& format) {
  if (format.anchorHref().isEmpty() || cursor.hasSelection())
    return false;
  if (cursor.atBlockEnd())
    return true;
  QTextCursor after(cursor);
  after.movePosition(QTextCursor::NextCharacter);
  return after.charFormat().anchorHref() != format.anchorHref();
}

} // namespace

void keepTypingPlain(QTextEdit& view) {
  const QTextCursor cursor = view.textCursor();
  QTextCharFormat format = cursor.charFormat();
  const bool ofPicture = isPicture(format);
  const bool ofLink = isAtLinkEnd(cursor, format);
  if (cursor.hasSelection() || (!ofPicture && !ofLink))
    return;
  const TextAttributes* origin = originOf(format);
  TextAttributes attributes = origin ? *origin : TextAttributes();
  if (ofPicture) {
    attributes.attachment.reset();
    clearProperties(format,
                    {QTextFormat::ObjectType, QTextFormat::ImageName, QTextFormat::ImageWidth,
                     QTextFormat::ImageHeight, QTextFormat::ImageQuality, QTextFormat::ImageTitle,
                     QTextFormat::ImageAltText});
    PendingContent::clearPlace(format);
  }
  if (ofLink) {
    attributes.link.reset();
    attributes.linkOriginal = {};
    attributes.underline.reset();
    clearProperties(format, {QTextFormat::IsAnchor, QTextFormat::AnchorHref,
                             QTextFormat::TextUnderlineStyle, QTextFormat::FontUnderline,
                             QTextFormat::ForegroundBrush});
  }
  setOrigin(format, attributes);
  view.setCurrentCharFormat(format);
}

void moveCursor(QTextEdit& view, const QTextCursor& cursor) {
  view.setTextCursor(cursor);
  keepTypingPlain(view);
}

} // namespace tockwise
