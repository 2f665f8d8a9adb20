// What the reminder window is made of, and what its controls do.
#pragma once

#include "editor/reminder_form.h"
#include "editor/reminder_questions.h"
#include "editor/reminder_window_controller.h"
#include "editor/toned_label.h"

#include <QTimer>

#include <optional>

namespace tockwise {

class ReminderWindowController::Private {
 public:
  enum class Outcome { Open, Created, Cancelled, Deleted };

  Private(ReminderWindowController& owner, ReminderDraft draft, Surroundings around);

  void windowDidLoad();
  void showText();
  void addShortcuts();
  void connectControls();
  void connectText();

  void addTime(const QString& title);
  void setToMaximumDate();
  void showOptions();
  void addTask();
  void removeTask();
  void createReminder();
  void cancel();
  void deleteReminder();

  std::optional<Answer> ask(const Question& question);
  void bringToFront();
  void takeKeyboardBack();
  void finish(Outcome how);
  void noteChange();
  void tell(const QString& notice, TonedLabel::Tone tone);
  void forgetNotice();
  void showNotice();
  void taskChanged();
  void showFiring();
  void showRepeat();

  /// The date as picked, with its seconds set to 0.
  Date dateToReturn() const;
  bool isEditing() const { return opened.purpose == EditorPurpose::EditReminder; }
  bool isTextChanged() const;

  ReminderWindowController& q;
  ReminderDraft opened;
  Surroundings surroundings;
  ReminderForm form;
  Interval interval;
  Extra extra;
  Offset offset;
  Task task;
  Outcome outcome = Outcome::Open;
  bool isLoading = true;
  bool isAsking = false;
  QString notice; // of something that happened
  TonedLabel::Tone noticeTone = TonedLabel::Tone::Plain;
  QTimer noticeStays;           // runs while the notice is too new to go
  QString draftTrouble;         // stays until it is over
  bool openedWithFonts = false; // the text that it was opened with states fonts
  bool createsWhenRead = false; // the create button was pressed while a picture was being read
  QTimer firesTimer;            // as time passes
  QTimer firesSoon;             // once for any number of changes
};

} // namespace tockwise
