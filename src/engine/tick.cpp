#include "engine/tick.h"

#include "base/log.h"
#include "dates/calendar.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <exception>

namespace tockwise {

Tick::Tick(ReminderQueue& queue, Firing& firing, const Clock& clock, TickActions actions)
    : m_queue(queue),
      m_firing(firing),
      m_clock(clock),
      m_actions(std::move(actions)),
      m_due(queue) {}

void Tick::run() {
  if (m_running)
    return;
  const QScopedValueRollback running(m_running, true);
  m_actions.sort();
  const quint64 sortedRevision = m_queue.revision();
  m_actions.synchronize();
  const bool adopted = m_queue.revision() != sortedRevision;
  if (!m_wait)
    m_queue.syncImportedUIDs();
  // What another program changed falls into place with the next second.
  m_sortedRevision = adopted ? sortedRevision : m_queue.revision();
  if (!m_wait) {
    const Date now = m_clock.now();
    const auto moment = m_due.nextMoment(now, Calendar::current());
    if (moment && *moment <= now)
      firingPass();
  }
}

void Tick::firingPass() {
  const Date second{std::floor(m_clock.now().seconds)};
  if (second != m_handledSecond) {
    m_handled.clear();
    m_handledSecond = second;
  }
  m_lastSave.reset();
  m_savePending = false;
  bool changed = false;
  // The queue, the clock and the zone are read again for each: a firing may change them.
  for (auto index = m_due.nextDue(0, m_clock.now(), Calendar::current()); index;
       index = m_due.nextDue(*index + 1, m_clock.now(), Calendar::current())) {
    if (!wasHandled(*index) && fire(*index)) {
      changed = true;
      saveSometimes();
    }
  }
  if (m_savePending)
    m_actions.saveDefaults();
  if (changed)
    m_actions.setDataModificationDate();
}

bool Tick::fire(qsizetype index) {
  const QString* identity = m_queue->reminderUUID.find(index);
  const QString uuid = identity ? *identity : QString();
  bool changed = false;
  try {
    changed = m_firing.doReminder(index);
  } catch (const std::exception& exception) {
    logLine(QString::fromLocal8Bit(exception.what()));
  }
  if (!changed)
    return false;
  const QString* standing = m_queue->reminderUUID.find(index);
  const auto stands = standing && *standing == uuid ? std::optional(index) : m_queue.indexOf(uuid);
  if (stands && m_due.isDue(*stands, m_clock.now(), Calendar::current()))
    m_handled.push_back({uuid, m_queue->reminderQueue.values()[size_t(*stands)]});
  return true;
}

bool Tick::wasHandled(qsizetype index) const {
  return std::any_of(m_handled.begin(), m_handled.end(), [&](const Handled& handled) {
    const QString* uuid = m_queue->reminderUUID.find(index);
    return uuid && *uuid == handled.reminderUUID &&
           m_queue->reminderQueue.values()[size_t(index)] == handled.fireDate;
  });
}

void Tick::saveSometimes() {
  const auto now = m_actions.steadyTime();
  m_savePending = m_lastSave && now - *m_lastSave < kSaveSpacing;
  if (m_savePending)
    return;
  m_actions.saveDefaults();
  m_lastSave = m_actions.steadyTime();
}

std::optional<Date> Tick::nextMoment() {
  const Date now = m_clock.now();
  const Date nextSecond{std::floor(now.seconds) + 1};
  auto moment = m_wait ? std::nullopt : m_due.nextMoment(now, Calendar::current());
  if (moment && *moment <= now)
    moment = nextSecond;
  if (m_sortedRevision != m_queue.revision())
    moment = moment ? std::min(*moment, nextSecond) : nextSecond;
  return moment;
}

} // namespace tockwise
