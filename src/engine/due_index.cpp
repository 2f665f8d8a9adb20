#include "engine/due_index.h"

#include "engine/repeat_rules.h"

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

Offset offsetOf(const Columns& columns, qsizetype index) {
  const Offset* offset = columns.reminderOffsets.find(index);
  return offset ? *offset : kBlankOffset;
}

} // namespace

std::optional<qsizetype> DueIndex::nextDue(qsizetype from, Date now,
                                           const Calendar& calendar) const {
  for (qsizetype i = from; i < m_queue.count(); ++i) {
    if (isDue(i, now, calendar))
      return i;
  }
  return std::nullopt;
}

bool DueIndex::isDue(qsizetype index, Date now, const Calendar& calendar) const {
  const Date* fireDate = m_queue->reminderQueue.find(index);
  if (!fireDate)
    return false;
  const Offset offset = offsetOf(m_queue.columns(), index);
  return earliestAlertDate(*fireDate, offset) <= now && !isSpent(index) &&
         alertDate(*fireDate, offset, calendar) <= now;
}

std::optional<Date> DueIndex::nextMoment(Date now, const Calendar& calendar) {
  const bool stands = m_revision == m_queue.revision() && m_calendar == calendar.identity() &&
                      now >= m_computedAt && (!m_moment || now < *m_moment);
  if (!stands) {
    m_moment = computed(now, calendar);
    m_revision = m_queue.revision();
    m_calendar = calendar.identity();
    m_computedAt = now;
  }
  return m_moment;
}

std::optional<Date> DueIndex::computed(Date now, const Calendar& calendar) const {
  const Columns& columns = m_queue.columns();
  const std::vector<Date>& dates = columns.reminderQueue.values();
  std::optional<Date> earliest;
  for (qsizetype i = 0; i < qsizetype(dates.size()); ++i) {
    const Date fireDate = dates[size_t(i)];
    const Offset offset = offsetOf(columns, i);
    const Date bound = earliestAlertDate(fireDate, offset);
    if (std::isnan(bound.seconds) || (earliest && bound >= *earliest) || isSpent(i))
      continue;
    std::optional<Date> moment = alertDate(fireDate, offset, calendar);
    if (*moment <= now && !isWhole(i)) {
      // Its firing fails; it is tried once when it falls due, then when others fire.
      moment = !m_revision || *moment > m_computedAt ? std::optional(now) : std::nullopt;
    } else if (*moment <= now) {
      moment = heldBackUntil(i, now, calendar);
    }
    if (moment && (!earliest || *moment < *earliest))
      earliest = moment;
  }
  return earliest;
}

/// When a tick could do something about a reminder that is due: now, unless it does not repeat
/// and its extra rule holds it back. A repeating one is moved on in any case.
std::optional<Date> DueIndex::heldBackUntil(qsizetype index, Date now,
                                            const Calendar& calendar) const {
  const Extra& extra = m_queue->reminderExtras.values()[size_t(index)];
  if (isRepeatingReminder(m_queue->reminderIntervals.values()[size_t(index)]) ||
      extra == kBlankExtra || checkExtra(extra, now, calendar))
    return now;
  return nextMomentAllowed(extra, now, calendar);
}

bool DueIndex::isWhole(qsizetype index) const {
  bool whole = true;
  m_queue.forEachColumn([&](const auto& column) { whole = whole && column.holds(index); });
  return whole;
}

bool DueIndex::isSpent(qsizetype index) const {
  const qint64* recent = m_queue->reminderRecent.find(index);
  const Interval* interval = m_queue->reminderIntervals.find(index);
  return recent && *recent != 0 && interval && !isRepeatingReminder(*interval);
}

} // namespace tockwise
