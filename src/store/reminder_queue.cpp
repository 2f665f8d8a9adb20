#include "store/reminder_queue.h"

#include <QUuid>

#include <iterator>

namespace tockwise {
namespace {

template <typename T, typename Make>
bool fitLength(std::vector<T>& values, size_t length, Make&& makePad) {
  const bool changed = values.size() != length;
  while (values.size() < length)
    values.push_back(makePad());
  values.resize(length);
  return changed;
}

template <typename Columns, typename Visitor> void visitAll(Columns& columns, Visitor&& visit) {
  std::apply([&](const auto&... field) { (visit(columns.*(field.first), field.second), ...); },
             kFields);
}

} // namespace

QString UUIDString() {
  return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

Result<Reminder> ReminderQueue::reminder(qsizetype index) const {
  Reminder row;
  std::optional<Error> failure;
  visitAll(m_columns, [&](const auto& column, auto field) {
    if (column.holds(index))
      row.*field = column.valueAt(index);
    else if (!failure)
      failure = column.outOfRange(index);
  });
  if (failure)
    return *failure;
  return row;
}

std::optional<qsizetype> ReminderQueue::indexOf(const QString& reminderUUID) const {
  const auto& values = m_columns.reminderUUID.m_values;
  const auto found = std::find(values.begin(), values.end(), reminderUUID);
  if (found == values.end())
    return std::nullopt;
  return found - values.begin();
}

void ReminderQueue::append(const Reminder& reminder) {
  syncImportedUIDs();
  visitAll(m_columns,
           [&](auto& column, auto field) { column.m_values.push_back(reminder.*field); });
  ++m_revision;
}

Result<void> ReminderQueue::replace(qsizetype index, const Reminder& reminder) {
  if (const auto current = this->reminder(index); !current)
    return current.error();
  const auto put = [&](auto& column, const auto& value) { column.m_values[size_t(index)] = value; };
  auto& c = m_columns;
  put(c.reminderQueue, reminder.reminderQueue);
  put(c.reminderDateTimeModified, reminder.reminderDateTimeModified);
  put(c.reminderDescriptions, reminder.reminderDescriptions);
  put(c.reminderRTFs, reminder.reminderRTFs);
  put(c.reminderTypes, QString::fromUtf16(kRegularType));
  put(c.reminderIntervals, reminder.reminderIntervals);
  put(c.reminderTasks, reminder.reminderTasks);
  put(c.reminderExtras, reminder.reminderExtras);
  put(c.reminderOffsets, reminder.reminderOffsets);
  put(c.reminderSendSMS, reminder.reminderSendSMS);
  put(c.reminderSendEmail, reminder.reminderSendEmail);
  ++m_revision;
  return {};
}

Result<void> ReminderQueue::remove(qsizetype index) {
  // A column that disagrees in length stops the removal where it is; the next repair mends it.
  std::optional<Error> failure;
  const auto removeFrom = [&](auto& column) {
    if (failure)
      return;
    if (!column.holds(index)) {
      failure = column.outOfRange(index);
      return;
    }
    column.m_values.erase(column.m_values.begin() + index);
    ++m_revision;
  };
  auto& c = m_columns;
  std::apply([&](auto&... column) { (removeFrom(column), ...); },
             std::tie(c.reminderQueue, c.reminderDateTimeCreated, c.reminderDateTimeFired,
                      c.reminderDateTimeModified, c.reminderRecent, c.reminderUUID,
                      c.reminderDescriptions, c.reminderRTFs, c.reminderTypes, c.reminderIntervals,
                      c.reminderSendSMS, c.reminderSendEmail, c.reminderTasks, c.reminderExtras,
                      c.reminderOffsets, c.importedUIDs));
  if (failure)
    return *failure;
  return {};
}

void ReminderQueue::clear() {
  visitAll(m_columns, [](auto& column, auto) { column.m_values.clear(); });
  ++m_revision;
}

Result<void> ReminderQueue::permute(const std::vector<quint32>& order) {
  std::optional<Error> failure;
  const auto last = qsizetype(order.size()) - 1;
  visitAll(m_columns, [&](const auto& column, auto) {
    if (!failure && last >= 0 && !column.holds(last))
      failure = column.outOfRange(last);
  });
  if (failure)
    return *failure;
  visitAll(m_columns, [&](auto& column, auto) {
    std::remove_reference_t<decltype(column.m_values)> moved;
    moved.reserve(column.m_values.size());
    for (const quint32 from : order)
      moved.push_back(std::move(column.m_values[from]));
    // A column longer than the queue keeps its surplus tail.
    std::move(column.m_values.begin() + qsizetype(order.size()), column.m_values.end(),
              std::back_inserter(moved));
    column.m_values = std::move(moved);
  });
  ++m_revision;
  return {};
}

void ReminderQueue::syncImportedUIDs() {
  auto& values = m_columns.importedUIDs.m_values;
  if (fitLength(values, m_columns.reminderQueue.m_values.size(), [] { return QString(); }))
    ++m_revision;
}

void ReminderQueue::syncArrays(const Pads& pads) {
  auto& c = m_columns;
  const size_t n = c.reminderDescriptions.m_values.size();
  bool changed = false;
  const auto fit = [&](auto& column, auto&& makePad) {
    changed = fitLength(column.m_values, n, makePad) || changed;
  };
  const auto constant = [](auto value) { return [value] { return value; }; };

  fit(c.reminderUUID, [] { return UUIDString(); });
  fit(c.reminderRecent, constant(qint64(0)));
  fit(c.reminderDateTimeCreated, constant(pads.now));
  fit(c.reminderDateTimeFired, constant(kDistantPast));
  fit(c.reminderDateTimeModified, constant(pads.now));
  fit(c.reminderRTFs, constant(QByteArray()));
  fit(c.reminderTypes, constant(QString::fromUtf16(kRegularType)));
  fit(c.importedUIDs, constant(QString()));
  fit(c.reminderIntervals, constant(kBlankInterval));
  fit(c.reminderTasks, constant(Task{}));
  fit(c.reminderExtras, constant(kBlankExtra));
  fit(c.reminderOffsets, constant(kBlankOffset));
  fit(c.reminderSendEmail, constant(Flag(pads.sendEmail)));
  fit(c.reminderSendSMS, constant(Flag(pads.sendSMS)));
  if (changed)
    ++m_revision;
}

void ReminderQueue::setColumns(Columns columns) {
  m_columns = std::move(columns);
  ++m_revision;
}

} // namespace tockwise
