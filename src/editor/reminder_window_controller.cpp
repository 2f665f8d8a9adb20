#include "editor/reminder_window_controller.h"

#include "editor/custom_panel.h"
#include "editor/reminder_window_private.h"
#include "editor/window_placement.h"
#include "richtext/default_font.h"
#include "richtext/qs_text_view.h"
#include "store/archive/text_archive.h"

#include <QApplication>
#include <QCheckBox>
#include <QFontInfo>
#include <QTextDocument>

namespace tockwise {
namespace {

/// How often the line that says when the reminder fires is looked at again, as time passes.
constexpr int kFiresLineSeconds = 10;

/// Other reminders being written.
QWidgetList otherPanels(const QWidget* panel) {
  QWidgetList others;
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (QWidget* window : windows) {
    if (window != panel && window->isVisible() && !window->isMinimized() &&
        qobject_cast<CustomPanel*>(window))
      others += window;
  }
  return others;
}

} // namespace

ReminderWindowController::ReminderWindowController(ReminderDraft draft, Surroundings surroundings)
    : d(std::make_unique<Private>(*this, std::move(draft), std::move(surroundings))) {
  d->windowDidLoad();
}

ReminderWindowController::~ReminderWindowController() = default;

ReminderDraft ReminderWindowController::newReminder(const Settings& settings, Date now) {
  ReminderDraft draft;
  draft.identifier = UUIDString();
  draft.reminderDate = now;
  draft.smsState = settings.boolean(QStringLiteral("sendSMS"));
  draft.emailState = settings.boolean(QStringLiteral("sendEmail"));
  if (settings.boolean(QStringLiteral("useDefaultTask")))
    draft.reminderTask = Task{false, settings.integer(QStringLiteral("defaultTask")),
                              settings.string(QStringLiteral("defaultTaskPath"))};
  return draft;
}

ReminderDraft ReminderWindowController::newReminder(const Settings& settings, Date now,
                                                    const QString& text,
                                                    const QByteArray& RTFData) {
  ReminderDraft draft = newReminder(settings, now);
  draft.reminderText = text;
  draft.RTFData = RTFData;
  return draft;
}

ReminderDraft ReminderWindowController::thisReminder(const Reminder& reminder) {
  ReminderDraft draft;
  draft.identifier = UUIDString();
  draft.purpose = EditorPurpose::EditReminder;
  draft.reminderUUID = reminder.reminderUUID;
  draft.reminderDate = reminder.reminderQueue;
  draft.reminderText = reminder.reminderDescriptions;
  draft.RTFData = reminder.reminderRTFs;
  draft.reminderInterval = reminder.reminderIntervals;
  draft.reminderExtra = reminder.reminderExtras;
  draft.reminderOffset = reminder.reminderOffsets;
  draft.reminderTask = reminder.reminderTasks;
  draft.smsState = reminder.reminderSendSMS;
  draft.emailState = reminder.reminderSendEmail;
  return draft;
}

void ReminderWindowController::showWindow() {
  if (!d->form.panel->isVisible())
    placeBeside(*d->form.panel, otherPanels(d->form.panel.get()));
  d->bringToFront();
  d->form.reminderTextView->setFocus();
  d->firesTimer.start(kFiresLineSeconds * 1000);
}

QWidget* ReminderWindowController::window() const {
  return d->form.panel.get();
}

const ReminderDraft& ReminderWindowController::openedWith() const {
  return d->opened;
}

ReminderDraft ReminderWindowController::current() const {
  ReminderDraft draft = d->opened;
  draft.reminderDate = d->form.reminderDate->date();
  draft.reminderInterval = d->interval;
  draft.reminderExtra = d->extra;
  draft.reminderOffset = d->offset;
  draft.reminderTask = d->task;
  draft.smsState = smsState();
  draft.emailState = emailState();
  if (d->isTextChanged()) {
    draft.reminderText = reminderDescription();
    draft.RTFData = reminderRTFData();
  }
  return draft;
}

bool ReminderWindowController::isChanged() const {
  const ReminderDraft& opened = d->opened;
  return d->isTextChanged() || d->form.reminderDate->date() != opened.reminderDate ||
         d->interval != opened.reminderInterval || !(d->extra == opened.reminderExtra) ||
         d->offset != opened.reminderOffset || !(d->task == opened.reminderTask) ||
         smsState() != opened.smsState || emailState() != opened.emailState;
}

void ReminderWindowController::tellDraftTrouble(const QString& why) {
  d->draftTrouble =
      why.isEmpty() ? QString()
                    : QStringLiteral("What you write is not safe before you save it: %1").arg(why);
  d->showNotice();
}

Date ReminderWindowController::reminderDate() const {
  return d->dateToReturn();
}

QString ReminderWindowController::reminderDescription() const {
  return d->form.reminderTextView->text().text;
}

QByteArray ReminderWindowController::reminderRTFData() const {
  if (!d->isTextChanged() && !d->opened.RTFData.isEmpty())
    return d->opened.RTFData;
  AttributedText text = d->form.reminderTextView->text();
  // A text that came with fonts of its own keeps what it has; in one that was typed here, the rest
  // is told the size that it was written in.
  if (!d->openedWithFonts)
    stateDefaultFont(text,
                     QFontInfo(d->form.reminderTextView->document()->defaultFont()).pointSizeF());
  return text.isEmpty() ? QByteArray() : archiveText(text);
}

Interval ReminderWindowController::reminderInterval() const {
  return d->interval;
}

Extra ReminderWindowController::reminderExtra() const {
  return d->extra;
}

Offset ReminderWindowController::reminderOffset() const {
  return d->offset;
}

Task ReminderWindowController::reminderTask() const {
  return d->task;
}

bool ReminderWindowController::smsState() const {
  return d->form.smsBox->isChecked();
}

bool ReminderWindowController::emailState() const {
  return d->form.emailBox->isChecked();
}

bool ReminderWindowController::didCancel() const {
  return d->outcome == Private::Outcome::Cancelled;
}

bool ReminderWindowController::didDelete() const {
  return d->outcome == Private::Outcome::Deleted;
}

} // namespace tockwise
