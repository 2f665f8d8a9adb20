#include "richtext/formatting_bar.h"

#include "richtext/bar_button.h"
#include "richtext/color_palette.h"
#include "richtext/link_prompt.h"
#include "richtext/qs_text_view.h"
#include "richtext/size_box.h"
#include "richtext/text_commands.h"
#include "richtext/text_lists.h"

#include <QAction>
#include <QActionGroup>
#include <QColorDialog>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QStandardPaths>

#include <functional>

namespace tockwise {
namespace {

constexpr int kGap = 6; // pixels between groups of buttons

struct AlignmentChoice {
  Qt::Alignment alignment;
  BarSign sign;
  const char* name;
  const char* objectName;
};
constexpr AlignmentChoice kAlignments[] = {
    {Qt::AlignLeft, BarSign::AlignLeft, QT_TRANSLATE_NOOP("FormattingBar", "Align at the Start"),
     "alignStart"},
    {Qt::AlignHCenter, BarSign::AlignCenter, QT_TRANSLATE_NOOP("FormattingBar", "Centre"),
     "alignCenter"},
    {Qt::AlignRight, BarSign::AlignRight, QT_TRANSLATE_NOOP("FormattingBar", "Align at the End"),
     "alignEnd"},
    {Qt::AlignJustify, BarSign::AlignBlock, QT_TRANSLATE_NOOP("FormattingBar", "Justify"),
     "alignBlock"}};

const AlignmentChoice& choiceOf(Qt::Alignment alignment) {
  for (const AlignmentChoice& choice : kAlignments) {
    if (alignment & choice.alignment & Qt::AlignHorizontal_Mask)
      return choice;
  }
  return kAlignments[0];
}

/// A thin line between groups of buttons.
class Separator final : public QWidget {
 public:
  explicit Separator(QWidget* parent) : QWidget(parent) { setFixedSize(2 * kGap + 1, 20); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QColor ink = palette().color(QPalette::WindowText);
    ink.setAlphaF(0.18F);
    QPainter(this).fillRect(kGap, 0, 1, height(), ink);
  }
};

} // namespace

class FormattingBar::Private {
 public:
  explicit Private(FormattingBar& bar);

  void show();
  void act(const std::function<void(QSTextView&)>& command);
  BarButton* add(BarSign sign, const char* name, const QString& title,
                 const QKeySequence& keys = {});
  BarButton* addToggle(BarSign sign, const char* name, const QString& title,
                       const QKeySequence& keys, void (*set)(QTextEdit&, bool));
  BarButton* addList(BarSign sign, const char* name, const QString& title, ListKind kind);
  void addSeparator();
  void addSize();
  void addColor();
  void addAlignment();
  void addLink();
  void addPicture();
  void addCrazy();
  void connectColors();
  void connectLink();
  void chooseOtherColor();
  void askForLink();
  void choosePictures();

  FormattingBar& q;
  QPointer<QSTextView> view;
  QHBoxLayout* row;
  ColorPalette* colors;
  LinkPrompt* prompt;
  BarButton* bold = nullptr;
  BarButton* italic = nullptr;
  BarButton* underline = nullptr;
  SizeBox* size = nullptr;
  BarButton* color = nullptr;
  BarButton* bullets = nullptr;
  BarButton* numbers = nullptr;
  BarButton* alignment = nullptr;
  BarButton* link = nullptr;
  BarButton* crazy = nullptr;
  QActionGroup* alignments = nullptr;
  QList<QAction*> actions; // of the view, while it has one
  QList<std::pair<QKeySequence, BarButton*>> keys;
};

FormattingBar::Private::Private(FormattingBar& bar)
    : q(bar),
      row(new QHBoxLayout(&bar)),
      colors(new ColorPalette(&bar)),
      prompt(new LinkPrompt(&bar)) {
  row->setContentsMargins(2, 2, 2, 2);
  row->setSpacing(1);
  bold = addToggle(BarSign::Bold, "boldButton", FormattingBar::tr("Bold"), QKeySequence::Bold,
                   &setBold);
  italic = addToggle(BarSign::Italic, "italicButton", FormattingBar::tr("Italic"),
                     QKeySequence::Italic, &setItalic);
  underline = addToggle(BarSign::Underline, "underlineButton", FormattingBar::tr("Underline"),
                        QKeySequence::Underline, &setUnderlined);
  addSeparator();
  addSize();
  addColor();
  addSeparator();
  bullets =
      addList(BarSign::Bullets, "bulletsButton", FormattingBar::tr("List"), ListKind::Bullets);
  numbers = addList(BarSign::Numbers, "numbersButton", FormattingBar::tr("Numbered list"),
                    ListKind::Numbers);
  addAlignment();
  addSeparator();
  addLink();
  addPicture();
  row->addStretch();
  addCrazy();
}

/// Does something to the text, which the keyboard goes back to.
void FormattingBar::Private::act(const std::function<void(QSTextView&)>& command) {
  if (!view)
    return;
  command(*view);
  view->setFocus();
  show();
}

BarButton* FormattingBar::Private::add(BarSign sign, const char* name, const QString& title,
                                       const QKeySequence& shortcut) {
  auto* button = new BarButton(sign, QString::fromLatin1(name), &q);
  button->setAccessibleName(title);
  button->setToolTip(shortcut.isEmpty() ? title
                                        : FormattingBar::tr("%1 (%2)").arg(
                                              title, shortcut.toString(QKeySequence::NativeText)));
  if (!shortcut.isEmpty())
    keys.push_back({shortcut, button});
  row->addWidget(button);
  return button;
}

BarButton* FormattingBar::Private::addToggle(BarSign sign, const char* name, const QString& title,
                                             const QKeySequence& shortcut,
                                             void (*set)(QTextEdit&, bool)) {
  BarButton* button = add(sign, name, title, shortcut);
  button->setCheckable(true);
  QObject::connect(button, &QToolButton::clicked, &q,
                   [this, set](bool on) { act([&](QSTextView& text) { set(text, on); }); });
  return button;
}

BarButton* FormattingBar::Private::addList(BarSign sign, const char* name, const QString& title,
                                           ListKind kind) {
  BarButton* button = add(sign, name, title);
  button->setCheckable(true);
  QObject::connect(button, &QToolButton::clicked, &q, [this, kind](bool on) {
    act([&](QSTextView& text) { setList(text.textCursor(), on ? kind : ListKind::None); });
  });
  return button;
}

void FormattingBar::Private::addSeparator() {
  row->addWidget(new Separator(&q));
}

void FormattingBar::Private::addSize() {
  size = new SizeBox(&q);
  row->addWidget(size);
  QObject::connect(size, &SizeBox::sizeChosen, &q, [this](double points) {
    act([&](QSTextView& text) { setFontSize(text, points); });
  });
  QObject::connect(size, &SizeBox::left, &q, [this] { act([](QSTextView&) {}); });
  row->addSpacing(2);
}

void FormattingBar::Private::addColor() {
  color = add(BarSign::Color, "colorButton", FormattingBar::tr("Text colour"));
  QObject::connect(color, &QToolButton::clicked, &q, [this] { colors->popupBelow(*color); });
  color->setOpensPopup(true);
  connectColors();
}

void FormattingBar::Private::connectColors() {
  QObject::connect(colors, &ColorPalette::chosen, &q, [this](const QColor& chosen) {
    act([&](QSTextView& text) { setColor(text, chosen); });
  });
  QObject::connect(colors, &ColorPalette::themeChosen, &q,
                   [this] { act([](QSTextView& text) { setColor(text, std::nullopt); }); });
  QObject::connect(colors, &ColorPalette::othersWanted, &q, [this] { chooseOtherColor(); });
}

void FormattingBar::Private::chooseOtherColor() {
  if (!view)
    return;
  auto* dialog = new QColorDialog(textState(*view).color.value_or(QColor(Qt::black)), &q);
  dialog->setObjectName(QStringLiteral("colorDialog"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QColorDialog::colorSelected, &q, [this](const QColor& chosen) {
    act([&](QSTextView& text) { setColor(text, chosen); });
  });
  dialog->open();
}

void FormattingBar::Private::addAlignment() {
  alignment = add(BarSign::AlignLeft, "alignmentButton", FormattingBar::tr("Alignment"));
  alignment->setPopupMode(QToolButton::InstantPopup);
  auto* menu = new QMenu(alignment);
  menu->setObjectName(QStringLiteral("alignmentMenu"));
  alignments = new QActionGroup(menu);
  for (const AlignmentChoice& choice : kAlignments) {
    QAction* action = menu->addAction(FormattingBar::tr(choice.name));
    action->setObjectName(QString::fromLatin1(choice.objectName));
    action->setCheckable(true);
    alignments->addAction(action);
    QObject::connect(action, &QAction::triggered, &q, [this, &choice] {
      act([&](QSTextView& text) { tockwise::setAlignment(text, choice.alignment); });
    });
  }
  alignment->setMenu(menu);
}

void FormattingBar::Private::addLink() {
  link = add(BarSign::Link, "linkButton", FormattingBar::tr("Link"),
             QKeySequence(Qt::CTRL | Qt::Key_K));
  link->setCheckable(true);
  QObject::connect(link, &QToolButton::clicked, &q, [this] { askForLink(); });
  connectLink();
}

void FormattingBar::Private::connectLink() {
  QObject::connect(prompt, &LinkPrompt::accepted, &q, [this](const QString& address) {
    act([&](QSTextView& text) { setLink(text, address); });
  });
  QObject::connect(prompt, &LinkPrompt::removed, &q,
                   [this] { act([](QSTextView& text) { removeLink(text); }); });
}

void FormattingBar::Private::askForLink() {
  if (!view)
    return;
  selectLink(*view);
  show();
  prompt->ask(*view->viewport(), view->cursorRect(), textState(*view).link);
}

void FormattingBar::Private::addPicture() {
  BarButton* button = add(BarSign::Picture, "pictureButton", FormattingBar::tr("Insert pictures…"));
  QObject::connect(button, &QToolButton::clicked, &q, [this] { choosePictures(); });
}

void FormattingBar::Private::choosePictures() {
  if (!view)
    return;
  auto* dialog = new QFileDialog(
      &q, FormattingBar::tr("Insert Pictures"),
      QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
      FormattingBar::tr("Pictures (*.png *.jpg *.jpeg *.gif *.bmp *.webp *.tif *.tiff);;"
                        "Rich text (*.rtf *.rtfd *.html *.htm);;All files (*)"));
  dialog->setObjectName(QStringLiteral("pictureDialog"));
  dialog->setFileMode(QFileDialog::ExistingFiles);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QFileDialog::filesSelected, &q, [this](const QStringList& paths) {
    act([&](QSTextView& text) { text.insertFiles(paths); });
  });
  dialog->open();
}

void FormattingBar::Private::addCrazy() {
  crazy = add(BarSign::Crazy, "crazyButton", FormattingBar::tr("Crazy text"));
  crazy->setToolTip(FormattingBar::tr("Crazy text: restyles the selection by chance"));
  crazy->setEnabled(false);
  QObject::connect(crazy, &QToolButton::clicked, &q,
                   [this] { act([](QSTextView& text) { text.crazyText(); }); });
}

/// What is at the cursor.
void FormattingBar::Private::show() {
  if (!view)
    return;
  const TextState state = textState(*view);
  bold->setChecked(state.isBold);
  italic->setChecked(state.isItalic);
  underline->setChecked(state.isUnderlined);
  size->show(state.size);
  color->setAccent(state.color.value_or(view->palette().color(QPalette::Text)));
  colors->setCurrent(state.color);
  link->setChecked(!state.link.isEmpty());
  const ListKind kind = listKindAt(view->textCursor());
  bullets->setChecked(kind == ListKind::Bullets);
  numbers->setChecked(kind == ListKind::Numbers);
  const AlignmentChoice& choice = choiceOf(view->textCursor().blockFormat().alignment());
  alignment->setSign(choice.sign);
  alignments->actions().at(int(&choice - kAlignments))->setChecked(true);
  crazy->setEnabled(view->textCursor().hasSelection());
}

FormattingBar::FormattingBar(QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(*this)) {
  setObjectName(QStringLiteral("formattingBar"));
  setAccessibleName(tr("Formatting"));
}

FormattingBar::~FormattingBar() = default;

void FormattingBar::setView(QSTextView* view) {
  if (d->view)
    d->view->disconnect(this);
  qDeleteAll(d->actions);
  d->actions.clear();
  d->view = view;
  if (!view)
    return;
  for (const auto& [keys, button] : d->keys) {
    auto* action = new QAction(button->accessibleName(), this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, button, &BarButton::click);
    view->addAction(action);
    d->actions.push_back(action);
  }
  const auto show = [this] { d->show(); };
  connect(view, &QTextEdit::currentCharFormatChanged, this, show);
  connect(view, &QTextEdit::cursorPositionChanged, this, show);
  connect(view, &QTextEdit::selectionChanged, this, show);
  connect(view, &QTextEdit::textChanged, this, show);
  d->show();
}

} // namespace tockwise
