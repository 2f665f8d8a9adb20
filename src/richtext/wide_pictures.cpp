#include "richtext/wide_pictures.h"

#include "richtext/picture_scaling.h"
#include "richtext/text_document.h"
#include "richtext/typing_format.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

#include <algorithm>
#include <vector>

namespace tockwise {
namespace {

/// The positions of what is found.
using Found = std::vector<int>;

void findIn(const QTextFragment& fragment, int from, int to, QSizeF frame, Found& found) {
  const QTextCharFormat format = fragment.charFormat();
  if (format.objectType() == QTextFormat::NoObject)
    return;
  const auto attachment = attachmentOf(format);
  if (!attachment || !isTooWide(*attachment, frame))
    return;
  const int end = std::min(fragment.position() + fragment.length(), to);
  for (int at = std::max(fragment.position(), from); at < end; ++at)
    found.push_back(at);
}

Found findTooWide(const QTextDocument& document, int from, int to, QSizeF frame) {
  Found found;
  for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() < to;
       block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      if (fragment.position() + fragment.length() > from && fragment.position() < to)
        findIn(fragment, from, to, frame, found);
    }
  }
  return found;
}

} // namespace

WidePictures::WidePictures(QTextEdit& view) : m_view(view) {
  connect(view.document(), &QTextDocument::contentsChange, this, &WidePictures::note);
}

void WidePictures::note(int position, int removed, int added) {
  // What undo brings back was looked at when it was written, and undo goes on from here.
  if (!m_isWatching || added == 0 || m_view.document()->isRedoAvailable())
    return;
  if (m_to > position + removed)
    m_to += added - removed;
  m_from = m_isAsked ? std::min(m_from, position) : position;
  m_to = std::max(m_isAsked ? m_to : 0, position + added);
  if (m_isAsked)
    return;
  m_isAsked = true;
  // The document must not change while it tells of a change.
  QMetaObject::invokeMethod(
      this, [this] { scaleEdited(); }, Qt::QueuedConnection);
}

void WidePictures::scaleEdited() {
  m_isAsked = false;
  QTextDocument& document = *m_view.document();
  const QSizeF frame = m_view.viewport()->size();
  const int end = std::min(m_to, document.characterCount());
  const Found found = findTooWide(document, m_from, end, frame);
  m_to = 0;
  if (found.empty())
    return;
  const int anchor = m_view.textCursor().anchor();
  const int position = m_view.textCursor().position();
  QTextCursor cursor(&document);
  cursor.joinPreviousEditBlock();
  for (const int place : found) {
    cursor.setPosition(place);
    cursor.setPosition(place + 1, QTextCursor::KeepAnchor);
    AttributedText piece = textOf(cursor);
    if (scaleAttachments(piece, frame) > 0)
      insertText(cursor, piece);
  }
  cursor.endEditBlock();
  QTextCursor shown = m_view.textCursor();
  shown.setPosition(anchor);
  shown.setPosition(position, QTextCursor::KeepAnchor);
  moveCursor(m_view, shown);
}

} // namespace tockwise
