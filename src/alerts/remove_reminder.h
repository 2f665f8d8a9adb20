// Deleting a reminder, with its question.
#pragma once

#include "base/result.h"
#include "ports/prompter.h"
#include "store/reminder_queue.h"

#include <functional>

namespace tockwise {

class ReminderRemover {
 public:
  virtual ~ReminderRemover() = default;
  /// Asks, and on "Yes" removes the reminder that stands at index when the call is made. Callers
  /// add no question of their own. Returns after the answer; the event loop runs meanwhile.
  virtual void removeReminder(qsizetype index) = 0;
};

/// Any thread; the work is done on the main thread while the caller waits.
class RemoveReminder final : public ReminderRemover {
 public:
  /// Removes the reminder of that identity and saves; NotFound when it is gone.
  using Remove = std::function<Result<void>(const QString& reminderUUID)>;

  /// The references must outlive the object.
  RemoveReminder(const ReminderQueue& queue, Prompter& prompter, Remove remove);

  /// An index that the queue does not hold, or a reminder that went away while the question was
  /// open, ends with a log line and nothing removed.
  void removeReminder(qsizetype index) override;

 private:
  void askAndRemove(qsizetype index);

  const ReminderQueue& m_queue;
  Prompter& m_prompter;
  Remove m_remove;
};

} // namespace tockwise
