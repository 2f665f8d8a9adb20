// What the controls of the reminder window do.
#include "dates/calendar.h"
#include "editor/custom_panel.h"
#include "editor/option_window_controller.h"
#include "editor/reminder_summaries.h"
#include "editor/reminder_window_private.h"
#include "editor/task_window_controller.h"
#include "editor/toned_label.h"
#include "engine/fire_forecast.h"
#include "prefs/quick_time.h"
#include "richtext/qs_text_view.h"

#include <QPointer>
#include <QPushButton>
#include <QTextDocument>

#include <cmath>

namespace tockwise {
namespace {

/// Whether cancelling asks: unless the setting is there and says no.
bool asksBeforeCancelling(const Settings& settings) {
  const QString key = QStringLiteral("showUndoChangesAlert");
  return settings.value(key).isNull() || settings.boolean(key);
}

} // namespace

void ReminderWindowController::Private::addTime(const QString& title) {
  form.reminderDate->setDate(surroundings.clock.now().plusSeconds(double(stringToSeconds(title))));
}

void ReminderWindowController::Private::setToMaximumDate() {
  form.reminderDate->setDate(kDistantFuture);
}

void ReminderWindowController::Private::showOptions() {
  auto* options = new OptionWindowController(form.panel.get(), interval, extra, offset);
  options->setAttribute(Qt::WA_DeleteOnClose);
  connect(options, &QDialog::accepted, &q, [this, options] {
    interval = options->reminderInterval();
    extra = options->reminderExtra();
    offset = options->reminderOffset();
    showRepeat();
    noteChange();
  });
  connect(options, &QDialog::finished, &q, [this] { takeKeyboardBack(); });
  options->open();
}

void ReminderWindowController::Private::addTask() {
  if (!task.blank) {
    removeTask();
    return;
  }
  auto* window = new TaskWindowController(form.panel.get(), surroundings.prompter);
  window->setAttribute(Qt::WA_DeleteOnClose);
  connect(window, &QDialog::finished, &q, [this, window] {
    takeKeyboardBack();
    if (window->didClose() || !window->addTask())
      return;
    task = Task{false, window->taskType(), window->pathString()};
    taskChanged();
    noteChange();
  });
  window->open();
}

void ReminderWindowController::Private::removeTask() {
  task = Task{};
  taskChanged();
  noteChange();
}

void ReminderWindowController::Private::taskChanged() {
  form.taskButton->setText(task.blank ? QStringLiteral("Add Task+")
                                      : QStringLiteral("Remove Task"));
  // A title as it stands has no mnemonic; the key is kept across titles.
  form.taskButton->setShortcut(QKeySequence(Qt::ALT | Qt::Key_T));
  form.taskLine->say(taskSummary(task), TonedLabel::Tone::Quiet);
}

void ReminderWindowController::Private::createReminder() {
  if (isAsking || outcome != Outcome::Open)
    return;
  if (form.reminderTextView->isLoading()) {
    createsWhenRead = true;
    tell(QStringLiteral("A picture is still being read..."), TonedLabel::Tone::Quiet);
    return;
  }
  if (form.reminderTextView->document()->isEmpty()) {
    if (ask(blankReminderMessage()))
      form.reminderTextView->setFocus();
    return;
  }
  const bool isPast = form.reminderDate->date() <= surroundings.clock.now();
  if (isPast && ask(pastDateQuestion()) != Answer::Yes)
    return;
  finish(Outcome::Created);
}

void ReminderWindowController::Private::cancel() {
  createsWhenRead = false;
  if (isAsking || outcome != Outcome::Open)
    return;
  if (asksBeforeCancelling(surroundings.settings) && ask(undoChangesQuestion()) != Answer::Yes)
    return;
  finish(Outcome::Cancelled);
}

void ReminderWindowController::Private::deleteReminder() {
  createsWhenRead = false;
  if (ask(deleteReminderQuestion()) == Answer::Yes)
    finish(Outcome::Deleted);
}

/// Nothing when there is nobody left to hear the answer, or another question is open.
std::optional<Answer> ReminderWindowController::Private::ask(const Question& question) {
  if (isAsking || outcome != Outcome::Open)
    return std::nullopt;
  isAsking = true;
  bringToFront();
  const QPointer<ReminderWindowController> alive(&q);
  const int answer = surroundings.prompter.ask(question);
  if (!alive)
    return std::nullopt;
  isAsking = false;
  takeKeyboardBack();
  return Answer(answer);
}

void ReminderWindowController::Private::bringToFront() {
  if (form.panel->isMinimized())
    form.panel->showNormal();
  form.panel->show();
  form.panel->raise();
  form.panel->activateWindow();
}

/// From a window over this one that was closed: a window manager may give it to an alert that is
/// open in front, and the next Return would dismiss that.
void ReminderWindowController::Private::takeKeyboardBack() {
  form.panel->activateWindow();
}

void ReminderWindowController::Private::finish(Outcome how) {
  outcome = how;
  firesTimer.stop();
  firesSoon.stop();
  form.panel->hide();
  Q_EMIT q.finished();
}

void ReminderWindowController::Private::noteChange() {
  if (isLoading || outcome != Outcome::Open)
    return;
  firesSoon.start(0);
  Q_EMIT q.changed();
}

/// Whoever goes on writing at once must be able to read a warning, too.
void ReminderWindowController::Private::tell(const QString& words, TonedLabel::Tone tone) {
  constexpr int kTimeToRead = 3000; // milliseconds
  notice = words;
  noticeTone = tone;
  if (tone == TonedLabel::Tone::Warning)
    noticeStays.start(kTimeToRead);
  else
    noticeStays.stop();
  showNotice();
}

void ReminderWindowController::Private::forgetNotice() {
  if (noticeStays.isActive())
    return;
  notice.clear();
  showNotice();
}

void ReminderWindowController::Private::showNotice() {
  if (notice.isEmpty())
    form.noticeLine->say(draftTrouble, TonedLabel::Tone::Warning);
  else
    form.noticeLine->say(notice, noticeTone);
  form.noticeLine->setVisible(!form.noticeLine->text().isEmpty());
}

bool ReminderWindowController::Private::isTextChanged() const {
  return form.reminderTextView->document()->isModified();
}

Date ReminderWindowController::Private::dateToReturn() const {
  const Date whole{std::floor(form.reminderDate->date().seconds)};
  return whole.plusSeconds(-Calendar::current().components(whole).second);
}

void ReminderWindowController::Private::showRepeat() {
  form.repeatLine->say(repeatSummary(interval, extra, offset), TonedLabel::Tone::Quiet);
}

void ReminderWindowController::Private::showFiring() {
  const FireRule rule{dateToReturn(), interval, extra, offset};
  const Date now = surroundings.clock.now();
  const Calendar& calendar = Calendar::current();
  form.firesLine->say(firesText(rule, now, calendar), nextFiring(rule, now, calendar)
                                                          ? TonedLabel::Tone::Plain
                                                          : TonedLabel::Tone::Warning);
}

} // namespace tockwise
