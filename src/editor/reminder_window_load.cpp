// How the reminder window comes to be: its controls are filled and connected.
#include "base/log.h"
#include "editor/custom_panel.h"
#include "editor/quick_time_pop.h"
#include "editor/reminder_window_private.h"
#include "editor/toned_label.h"
#include "richtext/default_font.h"
#include "richtext/qs_text_view.h"
#include "richtext/text_ruler.h"
#include "store/archive/text_archive.h"

#include <QCheckBox>
#include <QPushButton>
#include <QShortcut>
#include <QTextDocument>

namespace tockwise {
namespace {

DatePicker::Style styleOf(const Settings& settings) {
  return settings.boolean(QStringLiteral("datepicker")) ? DatePicker::Style::Graphical
                                                        : DatePicker::Style::Compact;
}

} // namespace

ReminderWindowController::Private::Private(ReminderWindowController& owner, ReminderDraft draft,
                                           Surroundings around)
    : q(owner),
      opened(std::move(draft)),
      surroundings(std::move(around)),
      form(styleOf(surroundings.settings)),
      interval(opened.reminderInterval),
      extra(opened.reminderExtra),
      offset(opened.reminderOffset),
      task(opened.reminderTask) {
  if (opened.identifier.isEmpty())
    opened.identifier = UUIDString();
}

void ReminderWindowController::Private::windowDidLoad() {
  form.deleteButton->setVisible(isEditing());
  form.panel->setWindowTitle(isEditing() ? QStringLiteral("Edit Reminder")
                                         : QStringLiteral("New Reminder"));
  if (isEditing()) {
    form.createButton->setText(QStringLiteral("Sa&ve"));
    form.createButton->setAccessibleName(QStringLiteral("Save"));
  }
  form.reminderDate->setClock(surroundings.clock);
  form.reminderDate->setDate(opened.reminderDate);
  showText();
  form.textRuler->setVisible(surroundings.settings.boolean(QStringLiteral("showRuler")));
  form.smsBox->setChecked(opened.smsState);
  form.emailBox->setChecked(opened.emailState);
  form.quickPop->setItems(QStringLiteral("Quick Reminder"),
                          surroundings.settings.stringList(QStringLiteral("quickRemindMenuArray")));
  taskChanged();
  showRepeat();
  showFiring();
  addShortcuts();
  connectControls();
  connectText();
  isLoading = false;
}

void ReminderWindowController::Private::showText() {
  QSTextView& view = *form.reminderTextView;
  if (opened.RTFData.isEmpty()) {
    logLine(QStringLiteral("No data to unarchive"));
    view.setReminderText(opened.reminderText);
  } else if (const Result<AttributedText> text = unarchiveTextStorage(opened.RTFData)) {
    view.setText(*text);
    openedWithFonts = hasFont(*text);
  } else {
    // What is no text storage is simply not shown; its bytes stay unless the text is changed.
    if (text.error().kind != Error::Kind::NotFound)
      logLine(QStringLiteral("Could not initialize the window!"));
    view.setReminderText(opened.reminderText);
  }
  view.document()->setModified(false);
  view.moveCursor(QTextCursor::End);
}

void ReminderWindowController::Private::addShortcuts() {
  for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* create = new QShortcut(QKeySequence(Qt::CTRL | key), form.panel.get());
    connect(create, &QShortcut::activated, &q, [this] { createReminder(); });
  }
  auto* quick = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Q), form.panel.get());
  connect(quick, &QShortcut::activated, &q, [this] {
    form.quickPop->setFocus(Qt::ShortcutFocusReason);
    form.quickPop->showPopup();
  });
}

void ReminderWindowController::Private::connectControls() {
  const auto onClick = [this](QPushButton* button, void (Private::*action)()) {
    connect(button, &QPushButton::clicked, &q, [this, action] { (this->*action)(); });
  };
  onClick(form.neverButton, &Private::setToMaximumDate);
  onClick(form.optionsButton, &Private::showOptions);
  onClick(form.taskButton, &Private::addTask);
  onClick(form.createButton, &Private::createReminder);
  onClick(form.cancelButton, &Private::cancel);
  onClick(form.deleteButton, &Private::deleteReminder);
  connect(form.panel.get(), &CustomPanel::closeRequested, &q, [this] { cancel(); });
  connect(form.quickPop, &QuickTimePop::chosen, &q,
          [this](const QString& title) { addTime(title); });
  connect(form.reminderDate, &DatePicker::dateChanged, &q, [this] { noteChange(); });
  connect(form.smsBox, &QCheckBox::toggled, &q, [this] { noteChange(); });
  connect(form.emailBox, &QCheckBox::toggled, &q, [this] { noteChange(); });
  firesSoon.setSingleShot(true);
  noticeStays.setSingleShot(true);
  connect(&firesSoon, &QTimer::timeout, &q, [this] { showFiring(); });
  connect(&firesTimer, &QTimer::timeout, &q, [this] { showFiring(); });
}

void ReminderWindowController::Private::connectText() {
  QSTextView* view = form.reminderTextView;
  connect(view, &QSTextView::textChanged, &q, [this] {
    forgetNotice();
    Q_EMIT q.changed();
  });
  connect(view, &QSTextView::tabLeft, &q,
          [this] { form.reminderDate->setFocus(Qt::TabFocusReason); });
  connect(view, &QSTextView::linkChosen, &q, [this](const QUrl& address) {
    if (surroundings.openURL)
      surroundings.openURL(address);
  });
  connect(view, &QSTextView::refused, &q, [this](const QString& why) {
    createsWhenRead = false;
    tell(why, TonedLabel::Tone::Warning);
  });
  connect(view, &QSTextView::loadingChanged, &q, [this](bool loading) {
    if (loading || !createsWhenRead)
      return;
    // In the next turn: a picture that is refused is told of in this one.
    QTimer::singleShot(0, &q, [this] {
      if (std::exchange(createsWhenRead, false))
        createReminder();
    });
  });
}

} // namespace tockwise
