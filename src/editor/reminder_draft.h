// What an editor window holds: the values of the reminder being written, and the draft of them that
// survives the end of the session.
#pragma once

#include "base/result.h"
#include "store/reminder.h"

#include <QString>

#include <vector>

namespace tockwise {

/// What the editor was opened for.
enum class EditorPurpose {
  NewReminder,    // "New Reminder...": adds a recent entry
  RecentReminder, // from a recent text: adds none
  RemindAgain,    // from an alert: adds none
  EditReminder    // an existing one
};

struct ReminderDraft {
  QString identifier; // of the draft itself, a UUID
  EditorPurpose purpose = EditorPurpose::NewReminder;
  QString reminderUUID;    // of the reminder being edited, or ""
  Date reminderDate;       // as picked, seconds not yet cut
  QString reminderText;    // plain
  QByteArray RTFData;      // archived rich text, or empty
  Interval reminderInterval = kBlankInterval;
  Extra reminderExtra;
  Offset reminderOffset = kBlankOffset;
  Task reminderTask;
  bool smsState = false;
  bool emailState = false;
  friend bool operator==(const ReminderDraft&, const ReminderDraft&) = default;
};

/// Drafts on the disk: one binary property list each, mode 0600, in a folder of their own, written
/// atomically. Main thread.
class DraftStore {
 public:
  /// folder: …/tockwise/drafts below XDG_STATE_HOME.
  explicit DraftStore(QString folder);
  static QString folderOfUser();

  Result<void> keep(const ReminderDraft& draft);
  void remove(const QString& identifier);
  /// What earlier sessions left, oldest first. A damaged one is put aside and logged, not lost.
  std::vector<ReminderDraft> kept() const;

 private:
  QString m_folder;
};

} // namespace tockwise
