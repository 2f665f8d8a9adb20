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
  QString reminderUUID; // of the reminder being edited, or ""
  Date reminderDate;    // as picked, seconds not yet cut
  QString reminderText; // plain
  QByteArray RTFData;   // archived rich text, or empty
  Interval reminderInterval = kBlankInterval;
  Extra reminderExtra;
  Offset reminderOffset = kBlankOffset;
  Task reminderTask;
  bool smsState = false;
  bool emailState = false;
  friend bool operator==(const ReminderDraft&, const ReminderDraft&) = default;
};

/// Drafts on the disk: one binary property list each, mode 0600, in a folder of their own, written
/// atomically. One process at a time; main thread.
class DraftStore {
 public:
  explicit DraftStore(QString folder);
  /// …/tockwise/drafts below XDG_STATE_HOME.
  static QString folderOfUser();

  /// Writes the draft, over what was kept under its identifier. Refused when that is no name for a
  /// file (a UUID is), Storage when it cannot be written.
  Result<void> keep(const ReminderDraft& draft);
  /// Nothing happens when there is none. A failure is logged.
  void remove(const QString& identifier);
  /// What earlier sessions left, the one least lately kept first. A damaged one is logged and put
  /// aside under another name; one that cannot be read, or was kept by a newer version, is logged
  /// and stays.
  std::vector<ReminderDraft> kept() const;

 private:
  QString path(const QString& identifier) const;

  QString m_folder;
};

} // namespace tockwise
