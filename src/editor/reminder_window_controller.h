// The window in which a reminder is written: text, date, switches, task and repeat options.
//
// The window does not block: alerts open in front of it, several editors may be open at a time,
// and whoever opened one learns of its end by finished(). Its form is "ReminderWindow" (calendar
// and clock face) where the setting datepicker is on, else "ReminderWindowS".
#pragma once

#include "base/clock.h"
#include "editor/reminder_draft.h"
#include "ports/prompter.h"
#include "store/settings.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace tockwise {

/// Main thread. Closed by exactly one of create, cancel and delete.
class ReminderWindowController final : public QObject {
  Q_OBJECT
 public:
  /// What the window needs of the program; all of it outlives the window.
  struct Surroundings {
    const Settings& settings;
    Prompter& prompter;
    const Clock& clock;
    /// Opens an address of the text that the user chose to follow.
    std::function<void(const QUrl&)> openURL;
  };

  /// The values that the window starts with are those of the draft; see the functions below.
  ReminderWindowController(ReminderDraft draft, Surroundings surroundings);
  ~ReminderWindowController() override;

  /// A new, empty reminder: due now, the settings' switches and default task.
  static ReminderDraft newReminder(const Settings& settings, Date now);
  /// The same with a text and rich text.
  static ReminderDraft newReminder(const Settings& settings, Date now, const QString& text,
                                   const QByteArray& RTFData);
  /// The values of an existing reminder.
  static ReminderDraft thisReminder(const Reminder& reminder);

  /// Shows the window and brings it to the front, with the keyboard in the text.
  void showWindow();
  QWidget* window() const;

  const ReminderDraft& openedWith() const;
  /// What the window holds now; for drafts.
  ReminderDraft current() const;
  /// Whether anything differs from what the window was opened with.
  bool isChanged() const;
  /// Says below the text that what is written is not safe before it is saved, and why; "" takes the
  /// words away.
  void tellDraftTrouble(const QString& why);

  // What the window holds once it was closed with its create button.
  Date reminderDate() const; // seconds cut to 0
  QString reminderDescription() const;
  QByteArray reminderRTFData() const; // byte for byte what was opened when the text is unchanged
  Interval reminderInterval() const;
  Extra reminderExtra() const;
  Offset reminderOffset() const;
  Task reminderTask() const;
  bool smsState() const;
  bool emailState() const;
  bool didCancel() const;
  bool didDelete() const;

 Q_SIGNALS:
  /// Anything the user can lose was changed. Emitted at once, for drafts to be kept.
  void changed();
  /// The window was closed; read the accessors. Emitted once.
  void finished();

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
