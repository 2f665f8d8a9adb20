// Opening editors, and taking what was written in them into the queue.
#pragma once

#include "editor/reminder_window_controller.h"
#include "store/reminder_store.h"

#include <QTimer>

#include <memory>
#include <vector>

namespace tockwise {

/// Main thread. Reminders are found again by their reminderUUID when an editor closes.
class ReminderEditing final : public QObject {
  Q_OBJECT
 public:
  ReminderEditing(ReminderStore& store, DraftStore drafts,
                  ReminderWindowController::Surroundings surroundings);
  ~ReminderEditing() override;

  /// "New Reminder...".
  void newReminder();
  /// From a recent text: the new reminder adds no recent entry.
  void newReminderS(const QString& text);
  /// Edits the reminder. One that is being edited already comes to the front.
  void showReminder(const QString& reminderUUID);
  /// From an alert.
  void remindAgain(const QString& message, const QByteArray& RTFData, bool smsState,
                   bool emailState);
  /// Asks whether to go on with what earlier sessions left unsaved; opens an editor for each, or
  /// removes them.
  void offerDrafts();

  /// The open windows, oldest first.
  const std::vector<std::unique_ptr<ReminderWindowController>>& reminderWindows() const;

 Q_SIGNALS:
  /// The queue was changed and saved.
  void changed();
  void removed(const QString& reminderUUID);

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
