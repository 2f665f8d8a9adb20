// Everything that the program keeps: the queue, the recent reminders and the settings, loaded
// from and saved to one preferences store.
#pragma once

#include "base/clock.h"
#include "base/result.h"
#include "store/preferences_store.h"
#include "store/recent_reminders.h"
#include "store/reminder_queue.h"

#include <functional>
#include <memory>
#include <optional>

namespace tockwise {

/// Converts the stored reminderRTFs, an array, of a release that stored no dataVersion; nothing
/// leaves them as they are.
using OldTextConversion = std::function<std::optional<Value>(const Value&)>;

/// The defaults registered before anything is read.
std::map<QString, Value> registeredDefaults();

/// Main thread; other threads go through runOnMainThread.
class ReminderStore {
 public:
  /// Opens and loads, in this order: defaults, conversion of old rich text when the store has no
  /// dataVersion, dataVersion, the columns with their fillings, syncArrays. convert is called at
  /// most once, and never again for a store that was opened with or without success.
  static Result<std::unique_ptr<ReminderStore>>
  open(const PreferencesStore::Paths& paths, const Clock& clock, OldTextConversion convert = {});
  ~ReminderStore();

  ReminderQueue& queue();
  const ReminderQueue& queue() const;
  RecentReminders& recentReminders();
  const RecentReminders& recentReminders() const;
  PreferencesStore& preferences();
  const PreferencesStore& preferences() const;
  /// What happened when the file was last read.
  const StoreNotice& loadReport() const;
  const Clock& clock() const;
  /// What a repair of the queue, or a row that is read from elsewhere, is padded with now.
  ReminderQueue::Pads pads() const;

  /// Brings queue, recent reminders and settings to the disk, when anything changed since they
  /// last were.
  void saveDefaults();

  /// Appends a reminder in the order of the rules: the row with created and modified now, a new
  /// UUID, never fired; a recent entry when asked for; then saves. Returns the new UUID.
  enum class RecentEntry { Add, Omit };
  QString appendReminder(Reminder reminder, RecentEntry recent);
  /// Changes the reminder in place as the editor does: the fields that an edit replaces, modified
  /// now, a recent entry, the firing count back to 0; then saves. NotFound when it is gone.
  Result<void> editReminder(const QString& reminderUUID, Reminder edited);
  /// Removes it without a question; then saves. NotFound when it is gone.
  Result<void> removeReminder(const QString& reminderUUID);
  /// Removes every reminder; then saves.
  void clearQueue();

 private:
  class Private;
  explicit ReminderStore(std::unique_ptr<Private> d);
  std::unique_ptr<Private> d;
};

} // namespace tockwise
