#include "richtext/qs_text_view.h"

#include "richtext/content_choice.h"
#include "richtext/pending_content.h"
#include "richtext/picture_scaling.h"
#include "richtext/text_document.h"
#include "richtext/text_formats.h"
#include "richtext/text_lists.h"
#include "richtext/typing_format.h"
#include "richtext/view_menu.h"
#include "richtext/wide_pictures.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMetaMethod>
#include <QMimeData>
#include <QToolTip>
#include <QUrl>

#include <algorithm>

namespace tockwise {
namespace {

/// Formats of more bytes than this are read on another thread.
constexpr qsizetype kReadAtOnce = qsizetype(64) * 1024;

/// The address as it may be opened; empty when it may not.
QUrl openable(const QString& address) {
  QUrl url(address, QUrl::StrictMode);
  const QString scheme = url.scheme().toLower();
  const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
  const bool isWhole = isWeb ? !url.host().isEmpty() : !url.path().isEmpty();
  if (!isWhole || (!isWeb && scheme != QLatin1String("mailto")))
    url.clear();
  return url;
}

qsizetype bytesOf(const QMimeData& data) {
  qsizetype bytes = 0;
  const QStringList formats = data.formats();
  for (const QString& format : formats)
    bytes += data.data(format).size();
  return bytes;
}

bool hasTooWidePicture(const AttributedText& text, QSizeF frame) {
  return std::any_of(text.runs.begin(), text.runs.end(), [&](const TextRun& run) {
    return run.attributes.attachment && isTooWide(*run.attributes.attachment, frame);
  });
}

QString plainLines(QString text) {
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  text.replace(u'\r', u'\n');
  text.remove(QChar::Null);
  return text;
}

/// What Qt does for Return over a selection loses the selection's formats for undo.
void replaceByLineEnd(QTextCursor& cursor) {
  cursor.beginEditBlock();
  cursor.removeSelectedText();
  if (!continueList(cursor))
    cursor.insertBlock();
  cursor.endEditBlock();
}

} // namespace

class QSTextView::Private {
 public:
  explicit Private(QSTextView& view) : q(view), pending(view), widePictures(view) {}

  QSizeF frame() const { return q.viewport()->size(); }
  void insert(const AttributedText& text);
  void take(const IncomingContent& content);
  bool leave(const QKeyEvent& key);
  bool editList(const QKeyEvent& key);
  template <typename Replace> void replaceText(const Replace& replace);

  QSTextView& q;
  PendingContent pending;
  WidePictures widePictures;
  bool isMoving = false;
  QPoint pressedAt;
};

void QSTextView::Private::insert(const AttributedText& text) {
  if (text.isEmpty())
    return;
  QTextCursor cursor = q.textCursor();
  insertText(cursor, text);
  tockwise::moveCursor(q, cursor);
  q.ensureCursorVisible();
}

void QSTextView::Private::take(const IncomingContent& content) {
  if (const auto* text = std::get_if<AttributedText>(&content)) {
    if (!hasTooWidePicture(*text, frame()))
      return insert(*text);
  }
  if (const auto* data = std::get_if<std::shared_ptr<const QMimeData>>(&content)) {
    if (bytesOf(**data) <= kReadAtOnce) {
      const auto text = textFromMimeData(**data);
      return text ? take(IncomingContent(*text)) : insert({});
    }
  }
  pending.start(content, frame(),
                isMoving ? PendingContent::Step::PartOfAnother : PendingContent::Step::OfItsOwn);
  q.ensureCursorVisible();
}

template <typename Replace> void QSTextView::Private::replaceText(const Replace& replace) {
  pending.forget();
  widePictures.setWatching(false);
  replace();
  widePictures.setWatching(true);
  q.moveCursor(QTextCursor::Start);
}

/// Tab and its kin; false for other keys.
bool QSTextView::Private::leave(const QKeyEvent& key) {
  const bool isTab = key.key() == Qt::Key_Tab;
  const bool isBack =
      key.key() == Qt::Key_Backtab || (isTab && key.modifiers().testFlag(Qt::ShiftModifier));
  if (!isTab && !isBack)
    return false;
  if (key.modifiers().testFlag(Qt::ControlModifier)) {
    if (!isBack && !q.isReadOnly())
      q.insertPlainText(QStringLiteral("\t"));
  } else if (isBack) {
    q.QWidget::focusNextPrevChild(false);
  } else if (q.isSignalConnected(QMetaMethod::fromSignal(&QSTextView::tabLeft))) {
    Q_EMIT q.tabLeft();
  } else {
    q.QWidget::focusNextPrevChild(true);
  }
  return true;
}

/// Return and Backspace in a list, Return over a selection; false where they mean nothing special.
bool QSTextView::Private::editList(const QKeyEvent& key) {
  const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  const bool isPlain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (q.isReadOnly() || !isPlain || (!isReturn && key.key() != Qt::Key_Backspace))
    return false;
  QTextCursor cursor = q.textCursor();
  if (isReturn && cursor.hasSelection())
    replaceByLineEnd(cursor);
  else if (!(isReturn ? continueList(cursor) : leaveList(cursor)))
    return false;
  tockwise::moveCursor(q, cursor);
  q.ensureCursorVisible();
  return true;
}

QSTextView::QSTextView(QWidget* parent) : QTextEdit(parent), d(std::make_unique<Private>(*this)) {
  setAcceptRichText(true);
  setAccessibleName(tr("Reminder text"));
  viewport()->setMouseTracking(true);
  connect(&d->pending, &PendingContent::loadingChanged, this, &QSTextView::loadingChanged);
  connect(&d->pending, &PendingContent::refused, this, &QSTextView::refused);
  connect(this, &QTextEdit::cursorPositionChanged, this, [this] { keepTypingPlain(*this); });
}

QSTextView::~QSTextView() = default;

int QSTextView::scaleAttachments(AttributedText& text) {
  return tockwise::scaleAttachments(text);
}

void QSTextView::setText(const AttributedText& text) {
  AttributedText scaled = text;
  tockwise::scaleAttachments(scaled);
  d->replaceText([&] { loadText(scaled, *document()); });
}

void QSTextView::setReminderText(const QString& plainText) {
  AttributedText text;
  text.append(plainLines(plainText), {});
  d->replaceText([&] { loadText(text, *document()); });
}

AttributedText QSTextView::text() const {
  return d->pending.completed(textOf(*document()), 0, document()->characterCount());
}

bool QSTextView::isLoading() const {
  return d->pending.isLoading();
}

void QSTextView::insertFiles(const QStringList& paths) {
  if (!paths.isEmpty() && !isReadOnly())
    d->take(paths);
}

void QSTextView::crazyText() {
  crazyText(installedFonts(), systemChance());
}

void QSTextView::crazyText(const QList<QFont>& fonts, const CrazyChance& chance) {
  const QTextCursor selection = textCursor();
  makeCrazy(selection, fonts, chance);
  setTextCursor(selection);
}

QUrl QSTextView::linkAt(const QTextCursor& cursor) const {
  QTextCursor after(cursor);
  after.setPosition(cursor.selectionStart());
  after.movePosition(QTextCursor::NextCharacter);
  QString address = after.charFormat().anchorHref();
  if (address.isEmpty()) {
    after.setPosition(cursor.selectionEnd());
    address = after.charFormat().anchorHref();
  }
  return openable(address);
}

bool QSTextView::canInsertFromMimeData(const QMimeData* source) const {
  return source && hasContent(*source);
}

void QSTextView::insertFromMimeData(const QMimeData* source) {
  if (!source || isReadOnly())
    return;
  if (const auto content = contentOf(*source))
    return d->take(*content);
  if (source->hasText())
    insertPlainText(plainLines(source->text()));
  ensureCursorVisible();
}

QMimeData* QSTextView::createMimeDataFromSelection() const {
  const QTextCursor selection = textCursor();
  const AttributedText text =
      d->pending.completed(textOf(selection), selection.selectionStart(), selection.selectionEnd());
  std::unique_ptr<QMimeData> data = mimeDataOf(text);
  rememberText(*data, text);
  return data.release();
}

bool QSTextView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    // The keys of our own actions go before those that a text view has for the same.
    const auto* key = static_cast<QKeyEvent*>(event);
    const QKeySequence pressed(key->keyCombination());
    const QList<QAction*> own = actions();
    if (std::any_of(own.begin(), own.end(), [&](const QAction* action) {
          return action->isEnabled() && action->shortcuts().contains(pressed);
        })) {
      event->ignore();
      return false;
    }
  }
  return QTextEdit::event(event);
}

bool QSTextView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const QUrl link = openable(anchorAt(help->pos()));
    if (link.isValid())
      QToolTip::showText(help->globalPos(),
                         tr("%1\nCtrl+click to open").arg(link.toDisplayString()), viewport());
    else
      QToolTip::hideText();
    return true;
  }
  return QTextEdit::viewportEvent(event);
}

void QSTextView::keyPressEvent(QKeyEvent* event) {
  // A key that moves the cursor nowhere, End at the end, brings the format before it back in
  // silence.
  keepTypingPlain(*this);
  if (d->leave(*event) || d->editList(*event))
    event->accept();
  else
    QTextEdit::keyPressEvent(event);
}

void QSTextView::inputMethodEvent(QInputMethodEvent* event) {
  keepTypingPlain(*this);
  QTextEdit::inputMethodEvent(event);
}

void QSTextView::dropEvent(QDropEvent* event) {
  // Text that is dragged within the view is taken away and put back as one step.
  d->isMoving = event->source() == this || event->source() == viewport();
  const qint64 started = d->pending.started();
  QTextEdit::dropEvent(event);
  if (d->pending.started() != started)
    d->pending.endStep();
  d->isMoving = false;
}

void QSTextView::mousePressEvent(QMouseEvent* event) {
  d->pressedAt = event->pos();
  QTextEdit::mousePressEvent(event);
}

void QSTextView::mouseMoveEvent(QMouseEvent* event) {
  QTextEdit::mouseMoveEvent(event);
  const bool wouldOpen = event->modifiers().testFlag(Qt::ControlModifier) &&
                         event->buttons() == Qt::NoButton &&
                         openable(anchorAt(event->pos())).isValid();
  const Qt::CursorShape shape = wouldOpen ? Qt::PointingHandCursor : Qt::IBeamCursor;
  if (viewport()->cursor().shape() != shape && event->buttons() == Qt::NoButton)
    viewport()->setCursor(shape);
}

void QSTextView::mouseReleaseEvent(QMouseEvent* event) {
  QTextEdit::mouseReleaseEvent(event);
  const bool isClick =
      (event->pos() - d->pressedAt).manhattanLength() < QApplication::startDragDistance();
  if (event->button() != Qt::LeftButton || !isClick ||
      !event->modifiers().testFlag(Qt::ControlModifier))
    return;
  const QUrl link = openable(anchorAt(event->pos()));
  if (link.isValid())
    Q_EMIT linkChosen(link);
}

void QSTextView::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = createStandardContextMenu(event->pos());
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const QUrl link = linkAt(textCursor());
  addToMenu(*menu, *this, link, [this, link] { Q_EMIT linkChosen(link); });
  menu->popup(event->globalPos());
}

} // namespace tockwise
