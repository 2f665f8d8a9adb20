#include "richtext/pending_content.h"

#include "richtext/place_picture.h"
#include "richtext/text_document.h"
#include "richtext/typing_format.h"

#include <QFutureWatcher>
#include <QPromise>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QThreadPool>

#include <algorithm>

namespace tockwise {
namespace {

constexpr int kNumberProperty = QTextFormat::UserProperty + 0x5000;

template <typename Visit>
void visitFragments(const QTextDocument& document, int from, int to, const Visit& visit) {
  for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() < to;
       block = block.next()) {
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      const QTextFragment fragment = it.fragment();
      if (fragment.position() < to && fragment.position() + fragment.length() > from)
        visit(fragment);
    }
  }
}

/// Over the selection; an empty text only removes it.
void insertContent(QTextCursor& cursor, const AttributedText& text) {
  if (text.isEmpty())
    cursor.removeSelectedText();
  else
    insertText(cursor, text);
}

/// The number of the place that has the format; 0 for other formats.
qint64 numberOf(const QTextCharFormat& format) {
  return PendingContent::isPlace(format) ? format.property(kNumberProperty).toLongLong() : 0;
}

QFuture<LoadedContent> loadOnAnotherThread(const IncomingContent& content, QSizeF frame) {
  const auto promise = std::make_shared<QPromise<LoadedContent>>();
  promise->start();
  QThreadPool::globalInstance()->start([promise, content, frame] {
    if (!promise->isCanceled())
      promise->addResult(loadContent(content, frame));
    promise->finish();
  });
  return promise->future();
}

/// Puts text over length characters of content's runs from position on.
void replacePart(AttributedText& content, qsizetype position, const AttributedText& text) {
  qsizetype start = 0;
  for (size_t i = 0; i < content.runs.size(); start += content.runs[i].length, ++i) {
    const TextRun run = content.runs[i];
    if (position >= start + run.length)
      continue;
    std::vector<TextRun> parts{{position - start, run.attributes}};
    parts.insert(parts.end(), text.runs.begin(), text.runs.end());
    parts.push_back({start + run.length - position - 1, run.attributes});
    content.runs.erase(content.runs.begin() + qptrdiff(i));
    content.runs.insert(content.runs.begin() + qptrdiff(i), parts.begin(), parts.end());
    break;
  }
  content.text.replace(position, 1, text.text);
  content.joinEqualRuns();
}

} // namespace

struct PendingContent::Ready {
  qint64 number = 0;
  AttributedText text;
  // What the place was put over, and the edits of the document right after.
  int start = 0;
  int replaced = 0;
  bool isOwnStep = false;
  quint64 edits = 0;
  bool wasPut = false;
};

struct PendingContent::Running {
  Ready place;
  QFutureWatcher<LoadedContent>* watcher = nullptr;
};

PendingContent::PendingContent(QTextEdit& view) : m_view(view) {
  connect(view.document(), &QTextDocument::contentsChange, this,
          [this](int position, int, int added) {
            ++m_edits;
            lookAgain(position, added);
          });
}

PendingContent::~PendingContent() {
  for (const Running& running : m_running)
    running.watcher->cancel();
}

bool PendingContent::isPlace(const QTextCharFormat& format) {
  // What is typed over a selection with a place has the place's format, and is no object.
  return format.objectType() == QTextFormat::ImageObject && format.hasProperty(kNumberProperty);
}

void PendingContent::clearPlace(QTextCharFormat& format) {
  format.clearProperty(kNumberProperty);
}

QTextCharFormat PendingContent::placeFormat(qint64 number) {
  QTextImageFormat format;
  const QSizeF size = addPlacePicture(*m_view.document(), m_view.palette());
  format.setName(placePictureName());
  format.setWidth(size.width());
  format.setHeight(size.height());
  format.setProperty(kNumberProperty, number);
  return format;
}

void PendingContent::start(const IncomingContent& content, QSizeF frame, Step step) {
  const qint64 number = ++m_lastNumber;
  QTextCursor cursor = m_view.textCursor();
  const QTextCharFormat around = cursor.charFormat();
  const int start = cursor.selectionStart();
  const int replaced = cursor.selectionEnd() - start;
  cursor.beginEditBlock();
  cursor.insertText(QString(QChar(QChar::ObjectReplacementCharacter)), placeFormat(number));
  cursor.setCharFormat(around);
  cursor.endEditBlock();
  moveCursor(m_view, cursor);

  auto* watcher = new QFutureWatcher<LoadedContent>(this);
  m_running.push_back(
      {{number, {}, start, replaced, step == Step::OfItsOwn, m_edits, false}, watcher});
  connect(watcher, &QFutureWatcherBase::finished, this, [this, number] { finish(number); });
  watcher->setFuture(loadOnAnotherThread(content, frame));
  if (m_running.size() == 1)
    Q_EMIT loadingChanged(true);
}

void PendingContent::endStep() {
  if (!m_running.empty() && m_running.back().place.number == m_lastNumber)
    m_running.back().place.edits = m_edits;
}

void PendingContent::forget() {
  const bool wasLoading = isLoading();
  for (const Running& running : m_running) {
    running.watcher->disconnect(this);
    running.watcher->cancel();
    running.watcher->deleteLater();
  }
  m_running.clear();
  m_ready.clear();
  if (wasLoading)
    Q_EMIT loadingChanged(false);
}

void PendingContent::finish(qint64 number) {
  const auto found =
      std::find_if(m_running.begin(), m_running.end(),
                   [number](const Running& running) { return running.place.number == number; });
  if (found == m_running.end())
    return;
  Ready ready = std::move(found->place);
  LoadedContent loaded;
  if (found->watcher->future().resultCount() > 0)
    loaded = found->watcher->result();
  found->watcher->deleteLater();
  m_running.erase(found);
  ready.text = loaded.text;
  put(std::move(ready));
  if (m_running.empty())
    Q_EMIT loadingChanged(false);
  for (const QString& why : loaded.refused)
    Q_EMIT refused(why);
}

void PendingContent::put(Ready ready) {
  const int position = positionOf(ready.number);
  if (position < 0) {
    m_ready.push_back(std::move(ready));
    return;
  }
  QTextDocument& document = *m_view.document();
  QTextCursor place(&document);
  qsizetype length = ready.text.text.size();
  const int anchor = m_view.textCursor().anchor();
  const int cursorAt = m_view.textCursor().position();
  if (ready.isOwnStep && m_edits == ready.edits) {
    // Nothing was written since: the content takes the place's step of undo.
    document.undo();
    document.clearUndoRedoStacks(QTextDocument::RedoStack);
    place.setPosition(ready.start);
    if (ready.text.isEmpty())
      length = ready.replaced; // what it was put over is back
    else
      place.setPosition(ready.start + ready.replaced, QTextCursor::KeepAnchor);
  } else {
    place.setPosition(position);
    place.setPosition(position + 1, QTextCursor::KeepAnchor);
    ready.wasPut = true;
    m_ready.push_back(ready); // undo may bring the place back
  }
  insertContent(place, ready.text);
  const auto moved = [&](int at) { return at <= position ? at : at - 1 + int(length); };
  QTextCursor cursor = m_view.textCursor();
  cursor.setPosition(moved(anchor));
  cursor.setPosition(moved(cursorAt), QTextCursor::KeepAnchor);
  moveCursor(m_view, cursor);
}

void PendingContent::lookAgain(int position, int added) {
  if (m_ready.empty() || added == 0)
    return;
  visitFragments(*m_view.document(), position, position + added, [this](const QTextFragment& part) {
    const qint64 number = numberOf(part.charFormat());
    const auto ready = std::find_if(m_ready.begin(), m_ready.end(), [number](const Ready& one) {
      return one.number == number && !one.wasPut;
    });
    if (ready == m_ready.end())
      return;
    // The document must not change while it tells of a change.
    QMetaObject::invokeMethod(
        this, [this, number] { putWhatCameBack(number); }, Qt::QueuedConnection);
  });
}

void PendingContent::putWhatCameBack(qint64 number) {
  const auto ready = std::find_if(m_ready.begin(), m_ready.end(), [number](const Ready& one) {
    return one.number == number && !one.wasPut;
  });
  if (ready == m_ready.end())
    return;
  Ready back = std::move(*ready);
  m_ready.erase(ready);
  put(std::move(back));
}

AttributedText PendingContent::completed(AttributedText text, int position, int end) const {
  if (m_lastNumber == 0)
    return text;
  std::vector<std::pair<int, qint64>> places;
  visitFragments(*m_view.document(), position, end, [&](const QTextFragment& part) {
    if (isPlace(part.charFormat()))
      places.emplace_back(part.position(), numberOf(part.charFormat()));
  });
  for (auto place = places.rbegin(); place != places.rend(); ++place) {
    const qint64 number = place->second;
    const auto ready = std::find_if(m_ready.begin(), m_ready.end(),
                                    [number](const Ready& one) { return one.number == number; });
    // A line end may be two characters of the text and is one of the document.
    QTextCursor before(m_view.document());
    before.setPosition(position);
    before.setPosition(place->first, QTextCursor::KeepAnchor);
    replacePart(text, textOf(before).text.size(),
                ready == m_ready.end() ? AttributedText() : ready->text);
  }
  return text;
}

int PendingContent::positionOf(qint64 number) const {
  int position = -1;
  const QTextDocument& document = *m_view.document();
  visitFragments(document, 0, document.characterCount(), [&](const QTextFragment& fragment) {
    if (numberOf(fragment.charFormat()) == number)
      position = fragment.position();
  });
  return position;
}

} // namespace tockwise
