// Which reminders are due, and when the next one will be: so that a tick with nothing due costs a
// comparison, and the program sleeps until there is something to do.
//
// Nothing is kept of single reminders. The one moment that matters, the earliest, is kept for as
// long as what it was computed from stands: the queue's revision, the calendar and the passage of
// time; the queue is read again when one of them has changed.
#pragma once

#include "dates/calendar.h"
#include "store/reminder_queue.h"

#include <optional>

namespace tockwise {

/// Main thread.
class DueIndex {
 public:
  explicit DueIndex(const ReminderQueue& queue) : m_queue(queue) {}

  /// The first reminder at or after index from that a tick at now has to fire: its alert date is
  /// not later than now, and firing it would do something or say why not (a one-time reminder
  /// that has fired never would). Reads the queue as it stands. Nothing: none.
  std::optional<qsizetype> nextDue(qsizetype from, Date now, const Calendar& calendar) const;
  /// Whether nextDue would stop at that reminder. False for an index that there is not.
  bool isDue(qsizetype index, Date now, const Calendar& calendar) const;

  /// The earliest moment, later than now or not, at which a tick could find something to do: a
  /// reminder falls due, or a due one that its extra rule holds back could be allowed. A reminder
  /// that is due already counts as now. Nothing: no such moment.
  std::optional<Date> nextMoment(Date now, const Calendar& calendar);

 private:
  std::optional<Date> computed(Date now, const Calendar& calendar) const;
  std::optional<Date> heldBackUntil(qsizetype index, Date now, const Calendar& calendar) const;
  bool isSpent(qsizetype index) const;
  bool isWhole(qsizetype index) const;

  const ReminderQueue& m_queue;
  std::optional<Date> m_moment;
  std::optional<quint64> m_revision;
  quint64 m_calendar = 0;
  Date m_computedAt;
};

} // namespace tockwise
