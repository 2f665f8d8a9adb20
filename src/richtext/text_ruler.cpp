#include "richtext/text_ruler.h"

#include "richtext/qs_text_view.h"
#include "richtext/ruler_editor.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QToolTip>

namespace tockwise {
namespace {

struct TabChoice {
  QTextOption::TabType type;
  const char* title;
  const char* name;
};
constexpr TabChoice kTabChoices[] = {
    {QTextOption::LeftTab, QT_TRANSLATE_NOOP("TextRuler", "Left"), "leftTab"},
    {QTextOption::CenterTab, QT_TRANSLATE_NOOP("TextRuler", "Centre"), "centerTab"},
    {QTextOption::RightTab, QT_TRANSLATE_NOOP("TextRuler", "Right"), "rightTab"}};

} // namespace

class TextRuler::Private {
 public:
  explicit Private(TextRuler& ruler) : q(ruler) { editor.setScale(scale); }

  void refresh();
  void changed();
  bool handle(const QKeyEvent& key);
  void move(const QKeyEvent& key);

  TextRuler& q;
  QPointer<QSTextView> view;
  RulerScale scale = scaleFor(QLocale());
  RulerEditor editor;
  bool wasNewTab = false; // by the first click of a double click
};

void TextRuler::Private::refresh() {
  if (!view)
    return;
  const QPoint corner = q.mapFromGlobal(view->viewport()->mapToGlobal(QPoint()));
  if (editor.refresh(corner.x()))
    q.update();
}

/// What the editor did shows, and is told to assistive programs.
void TextRuler::Private::changed() {
  refresh();
  q.update();
  const auto& chosen = editor.chosen();
  q.setAccessibleDescription(chosen ? editor.text(*chosen, q.locale()) : QString());
}

void TextRuler::Private::move(const QKeyEvent& key) {
  const bool isFree = key.modifiers().testFlag(Qt::ControlModifier);
  const double step = isFree ? 1 : scale.grain;
  editor.nudge(key.key() == Qt::Key_Left ? -step : step, isFree);
}

bool TextRuler::Private::handle(const QKeyEvent& key) {
  switch (key.key()) {
  case Qt::Key_Left:
  case Qt::Key_Right:
    move(key);
    return true;
  case Qt::Key_Up:
    editor.chooseNext(-1);
    return true;
  case Qt::Key_Down:
    editor.chooseNext(1);
    return true;
  case Qt::Key_Insert:
  case Qt::Key_Plus:
    editor.addTab();
    return true;
  case Qt::Key_Delete:
  case Qt::Key_Backspace:
    editor.removeTab();
    return true;
  case Qt::Key_Return:
  case Qt::Key_Enter:
  case Qt::Key_Space:
    editor.turnTabType();
    return true;
  case Qt::Key_Escape:
    view->setFocus();
    return true;
  default:
    return false;
  }
}

TextRuler::TextRuler(QWidget* parent) : QWidget(parent), d(std::make_unique<Private>(*this)) {
  setObjectName(QStringLiteral("textRuler"));
  setAccessibleName(tr("Ruler"));
  setFocusPolicy(Qt::TabFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

TextRuler::~TextRuler() = default;

QSize TextRuler::sizeHint() const {
  return {200, kRulerHeight};
}

void TextRuler::setView(QSTextView* view) {
  if (d->view) {
    d->view->disconnect(this);
    d->view->horizontalScrollBar()->disconnect(this);
    d->view->viewport()->removeEventFilter(this);
  }
  d->view = view;
  d->editor.setView(view);
  if (!view)
    return;
  const auto refresh = [this] { d->refresh(); };
  connect(view, &QTextEdit::cursorPositionChanged, this, refresh);
  connect(view, &QTextEdit::textChanged, this, refresh);
  connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this, refresh);
  connect(view->horizontalScrollBar(), &QScrollBar::rangeChanged, this, refresh);
  connect(view, &QObject::destroyed, this, [this] { d->editor.setView(nullptr); });
  view->viewport()->installEventFilter(this);
  d->changed();
}

bool TextRuler::eventFilter(QObject* watched, QEvent* event) {
  const bool isLaidOut = event->type() == QEvent::Resize || event->type() == QEvent::Move ||
                         event->type() == QEvent::Show || event->type() == QEvent::Paint;
  if (isLaidOut)
    d->refresh();
  return QWidget::eventFilter(watched, event);
}

void TextRuler::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!d->view)
    return;
  paintScale(painter, rect(), d->editor.span(), {palette(), locale(), d->scale});
  const bool isActive = hasFocus() || d->editor.isDragging();
  const std::vector<RulerMark> marks = d->editor.allMarks();
  for (const RulerMark& mark : marks)
    paintMark(painter, d->editor.marks(), mark, d->editor.span(), palette(),
              isActive && d->editor.chosen() == mark);
  if (!hasFocus())
    return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

void TextRuler::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LocaleChange) {
    d->scale = scaleFor(locale());
    d->editor.setScale(d->scale);
  }
  update();
  QWidget::changeEvent(event);
}

void TextRuler::resizeEvent(QResizeEvent* event) {
  d->refresh();
  QWidget::resizeEvent(event);
}

bool TextRuler::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && d->view) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto mark = d->editor.markAt(help->pos());
    QToolTip::showText(help->globalPos(),
                       mark ? d->editor.text(*mark, locale()) : tr("Click to set a tab stop"),
                       this);
    return true;
  }
  return QWidget::event(event);
}

void TextRuler::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !d->view)
    return;
  d->editor.beginDrag(event->position());
  d->wasNewTab = d->editor.isNewTab();
  d->changed();
}

void TextRuler::mouseMoveEvent(QMouseEvent* event) {
  if (!d->editor.isDragging()) {
    setCursor(d->view && d->editor.markAt(event->position()) ? Qt::SizeHorCursor : Qt::ArrowCursor);
    return;
  }
  d->editor.drag(event->position(), event->modifiers().testFlag(Qt::AltModifier));
  d->changed();
  if (const auto& chosen = d->editor.chosen())
    QToolTip::showText(event->globalPosition().toPoint(), d->editor.text(*chosen, locale()), this);
  else
    QToolTip::hideText();
}

void TextRuler::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !d->editor.isDragging())
    return;
  d->editor.endDrag();
  d->changed();
}

void TextRuler::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !d->view || d->wasNewTab)
    return;
  d->editor.choose(d->editor.markAt(event->position()));
  d->editor.turnTabType();
  d->changed();
}

void TextRuler::contextMenuEvent(QContextMenuEvent* event) {
  if (!d->view)
    return;
  if (event->reason() == QContextMenuEvent::Mouse)
    d->editor.choose(d->editor.markAt(event->pos()));
  d->changed();
  const auto chosen = d->editor.chosen();
  if (!chosen || chosen->kind != RulerMark::Kind::Tab)
    return;
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("tabMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [&](const QString& title, const QString& name, auto&& command) {
    QAction* action = menu->addAction(title);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, command] {
      command();
      d->changed();
    });
    return action;
  };
  const QTextOption::TabType now = d->editor.marks().tabs.value(chosen->tab).type;
  for (const TabChoice& choice : kTabChoices) {
    QAction* action = add(tr(choice.title), QString::fromLatin1(choice.name),
                          [this, type = choice.type] { d->editor.setTabType(type); });
    action->setCheckable(true);
    action->setChecked(choice.type == now);
  }
  menu->addSeparator();
  add(tr("Remove"), QStringLiteral("removeTab"), [this] { d->editor.removeTab(); });
  menu->popup(
      event->reason() == QContextMenuEvent::Mouse
          ? event->globalPos()
          : mapToGlobal(
                markArea(d->editor.marks(), *chosen, d->editor.span()).bottomLeft().toPoint()));
}

void TextRuler::keyPressEvent(QKeyEvent* event) {
  if (!d->view || !d->handle(*event))
    return QWidget::keyPressEvent(event);
  d->changed();
}

void TextRuler::focusInEvent(QFocusEvent* event) {
  if (!d->editor.chosen())
    d->editor.chooseNext(1);
  d->changed();
  QWidget::focusInEvent(event);
}

void TextRuler::focusOutEvent(QFocusEvent* event) {
  update();
  QWidget::focusOutEvent(event);
}

} // namespace tockwise
