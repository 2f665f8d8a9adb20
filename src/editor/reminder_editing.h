// Opening editors, and taking what was written in them into the queue.
//
// Nothing that was written is lost: what an editor holds is kept as a draft within about a second
// of a change, and at the end of the session, until the editor is closed and the queue is saved.
#pragma once

#include "editor/reminder_editor.h"
#include "store/reminder_store.h"

#include <chrono>
#include <memory>
#include <vector>

namespace tockwise {

/// Main thread. Reminders are found again by their reminderUUID when an editor closes. Of the
/// processes of a user only the one that holds the store may have one: it owns the drafts.
class ReminderEditing final : public QObject {
  Q_OBJECT
 public:
  /// How long after a change a draft is kept; longer for drafts that take long to write.
  static constexpr std::chrono::milliseconds kDraftDelay{1000};

  /// The references must outlive the object.
  ReminderEditing(ReminderStore& store, DraftStore drafts,
                  ReminderWindowController::Surroundings surroundings);
  /// The same with editors of another kind.
  ReminderEditing(ReminderStore& store, DraftStore drafts, Prompter& prompter, MakeEditor make,
                  std::chrono::milliseconds draftDelay = kDraftDelay);
  /// Keeps the drafts of what is open.
  ~ReminderEditing() override;

  /// "New Reminder...".
  void newReminder();
  /// From a recent text: the new reminder adds no recent entry.
  void newReminderS(const QString& text);
  /// Edits the reminder. One that is being edited already comes to the front.
  void showReminder(const QString& reminderUUID);
  /// From an alert, with its text; the switches are the settings', as for any new reminder.
  void remindAgain(const QString& message, const QByteArray& RTFData);
  /// Asks once whether to go on with what earlier sessions left unsaved; then opens an editor for
  /// each, or removes them. Asks nothing when there is none.
  void offerDrafts();

  /// The open editors, oldest first.
  std::vector<ReminderEditor*> reminderWindows() const;
  /// Whether an editor holds anything that is neither in the queue nor as it was opened. It would
  /// be offered as a draft at the next start.
  bool hasUnsaved() const;
  /// Keeps the drafts of everything that was changed, now.
  void keepDrafts();

 Q_SIGNALS:
  /// The queue was changed and saved.
  void changed();
  void removed(const QString& reminderUUID);

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
