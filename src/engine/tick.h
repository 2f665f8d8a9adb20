// One tick: the queue is sorted, the store synchronised, and every reminder whose time has come is
// fired, in the queue's order. (Title and menu are derived from the result when they are shown.)
#pragma once

#include "base/clock.h"
#include "engine/due_index.h"
#include "engine/firing.h"
#include "store/reminder_queue.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace tockwise {

/// What a tick asks of the rest of the program; all of them must be set. Main thread. sort and
/// synchronize are called at every tick and must cost next to nothing when nothing has changed.
struct TickActions {
  std::function<void()> sort;                    // puts the queue in its order
  std::function<void()> synchronize;             // brings store and file together
  std::function<void()> saveDefaults;            // saves the queue
  std::function<void()> setDataModificationDate; // tells the synchronisation of the change
  /// Time that only moves forward; between saves.
  std::function<std::chrono::milliseconds()> steadyTime;
};

/// Main thread.
class Tick {
 public:
  /// Saves within one firing pass are at least this far apart (and one follows the pass): a
  /// thousand reminders due at once would else write the whole store a thousand times.
  static constexpr std::chrono::milliseconds kSaveSpacing{100};

  Tick(ReminderQueue& queue, Firing& firing, const Clock& clock, TickActions actions);

  /// One tick. On an idle queue it writes nothing and allocates nothing. A failing reminder is
  /// logged and the tick goes on. Called while a tick runs (a window opened by a firing may run an
  /// event loop) it does nothing.
  ///
  /// A reminder that still is due after its firing (an offset longer than the interval) is fired
  /// again a second later, however many ticks there are meanwhile.
  void run();
  bool isRunning() const { return m_running; }

  /// While on, nothing fires. Off at the start.
  bool wait() const { return m_wait; }
  void setWait(bool wait) { m_wait = wait; }

  /// The next moment, later than now, at which a tick could find something to do, as long as the
  /// queue, the zone and the clock are left alone: something falls due (unless wait is on), or
  /// the queue has changed since it was sorted, as firing does, and falls into place with the
  /// next second. Nothing: no such moment.
  std::optional<Date> nextMoment();

 private:
  /// A reminder that was handled and is still due.
  struct Handled {
    QString reminderUUID;
    Date fireDate;
  };
  void firingPass();
  bool fire(qsizetype index);
  bool wasHandled(qsizetype index) const;
  void saveSometimes();

  ReminderQueue& m_queue;
  Firing& m_firing;
  const Clock& m_clock;
  TickActions m_actions;
  DueIndex m_due;
  bool m_wait = false;
  bool m_running = false;
  std::optional<quint64> m_sortedRevision;
  Date m_handledSecond;
  std::vector<Handled> m_handled; // in m_handledSecond; empty but for overlong offsets
  std::optional<std::chrono::milliseconds> m_lastSave; // in the pass that runs
  bool m_savePending = false;
};

} // namespace tockwise
