// The reminder queue: sixteen parallel columns, one per field; the reminder at position i is
// made of element i of every column. This class is the only one that touches them.
//
// Columns may be of unequal length between repairs, as stored and imported data require; an
// access beyond a column's end is a reported failure. Main thread.
#pragma once

#include "base/result.h"
#include "store/reminder.h"

#include <functional>
#include <optional>
#include <span>
#include <tuple>
#include <vector>

namespace tockwise {

/// One field of every reminder.
template <typename T> class Column {
 public:
  using value_type = T;

  explicit constexpr Column(const char16_t* key) : m_key(key) {}

  QString key() const { return QString::fromUtf16(m_key); }
  qsizetype size() const { return qsizetype(m_values.size()); }
  bool isEmpty() const { return m_values.empty(); }
  bool holds(qsizetype index) const { return index >= 0 && index < size(); }

  Result<T> at(qsizetype index) const {
    if (!holds(index))
      return outOfRange(index);
    return T(m_values[size_t(index)]);
  }
  /// The element, or nothing.
  const T* find(qsizetype index) const {
    return holds(index) ? std::addressof(valueAt(index)) : nullptr;
  }
  const std::vector<T>& values() const { return m_values; }

 private:
  friend class ReminderQueue;
  const T& valueAt(qsizetype index) const { return m_values[size_t(index)]; }
  Error outOfRange(qsizetype index) const {
    return Error{Error::Kind::OutOfRange,
                 QStringLiteral("%1: index %2 beyond the end (%3 elements)")
                     .arg(key())
                     .arg(index)
                     .arg(size())};
  }

  const char16_t* m_key;
  std::vector<T> m_values;
};

/// A boolean that a vector can refer to.
struct Flag {
  bool on = false;
  Flag() = default;
  Flag(bool value) : on(value) {}
  operator bool() const { return on; }
  friend bool operator==(const Flag&, const Flag&) = default;
};

struct Columns {
  Column<Date> reminderQueue{u"reminderQueue"};
  Column<Date> reminderDateTimeCreated{u"reminderDateTimeCreated"};
  Column<Date> reminderDateTimeFired{u"reminderDateTimeFired"};
  Column<Date> reminderDateTimeModified{u"reminderDateTimeModified"};
  Column<qint64> reminderRecent{u"reminderRecent"};
  Column<QString> reminderUUID{u"reminderUUID"};
  Column<QString> reminderDescriptions{u"reminderDescriptions"};
  Column<QByteArray> reminderRTFs{u"reminderRTFs"};
  Column<QString> reminderTypes{u"reminderTypes"};
  Column<Interval> reminderIntervals{u"reminderIntervals"};
  Column<Flag> reminderSendEmail{u"reminderSendEmail"};
  Column<Flag> reminderSendSMS{u"reminderSendSMS"};
  Column<Task> reminderTasks{u"reminderTasks"};
  Column<Extra> reminderExtras{u"reminderExtras"};
  Column<Offset> reminderOffsets{u"reminderOffsets"};
  Column<QString> importedUIDs{u"importedUIDs"};
};

/// Every column with the Reminder field of the same name: the one list of the sixteen.
inline constexpr auto kFields =
    std::tuple{std::pair{&Columns::reminderQueue, &Reminder::reminderQueue},
               std::pair{&Columns::reminderDateTimeCreated, &Reminder::reminderDateTimeCreated},
               std::pair{&Columns::reminderDateTimeFired, &Reminder::reminderDateTimeFired},
               std::pair{&Columns::reminderDateTimeModified, &Reminder::reminderDateTimeModified},
               std::pair{&Columns::reminderRecent, &Reminder::reminderRecent},
               std::pair{&Columns::reminderUUID, &Reminder::reminderUUID},
               std::pair{&Columns::reminderDescriptions, &Reminder::reminderDescriptions},
               std::pair{&Columns::reminderRTFs, &Reminder::reminderRTFs},
               std::pair{&Columns::reminderTypes, &Reminder::reminderTypes},
               std::pair{&Columns::reminderIntervals, &Reminder::reminderIntervals},
               std::pair{&Columns::reminderSendEmail, &Reminder::reminderSendEmail},
               std::pair{&Columns::reminderSendSMS, &Reminder::reminderSendSMS},
               std::pair{&Columns::reminderTasks, &Reminder::reminderTasks},
               std::pair{&Columns::reminderExtras, &Reminder::reminderExtras},
               std::pair{&Columns::reminderOffsets, &Reminder::reminderOffsets},
               std::pair{&Columns::importedUIDs, &Reminder::importedUIDs}};

class ReminderQueue {
 public:
  /// What a repair pads the two mail columns with: the user's preferences.
  struct Pads {
    Date now;
    bool sendEmail = false;
    bool sendSMS = false;
  };

  const Columns& columns() const { return m_columns; }
  const Columns* operator->() const { return &m_columns; }

  /// Number of reminders: elements of reminderQueue.
  qsizetype count() const { return m_columns.reminderQueue.size(); }
  bool isEmpty() const { return count() == 0; }

  /// Counts changes; equal revisions mean equal contents.
  quint64 revision() const { return m_revision; }

  /// The whole row. Fails when a column does not hold the index.
  Result<Reminder> reminder(qsizetype index) const;
  /// Where the reminder stands now.
  std::optional<qsizetype> indexOf(const QString& reminderUUID) const;

  /// Replaces one element: queue.set<&Columns::reminderRecent>(i, 3).
  template <auto Member, typename T> Result<void> set(qsizetype index, T&& value) {
    auto& column = m_columns.*Member;
    if (!column.holds(index))
      return column.outOfRange(index);
    auto& element = column.m_values[size_t(index)];
    if (!(element == value)) {
      element = std::forward<T>(value);
      ++m_revision;
    }
    return {};
  }

  /// syncImportedUIDs, then one element more in every column.
  void append(const Reminder& reminder);
  /// Replaces what an edit replaces: everything but created, fired, UUID, importedUIDs and the
  /// firing count; the type becomes "regular". Fails, changing nothing, when a column does not
  /// hold the index.
  Result<void> replace(qsizetype index, const Reminder& reminder);
  /// Removes one element from every column, in the order of a removal. Stops at the first column
  /// that does not hold the index.
  Result<void> remove(qsizetype index);
  void clear();
  /// Reorders every column: the reminder at order[i] moves to i. order is a permutation of
  /// 0 … count - 1. Fails, changing nothing, when a column is shorter.
  Result<void> permute(const std::vector<quint32>& order);

  /// Brings importedUIDs to the length of reminderQueue.
  void syncImportedUIDs();
  /// Brings every column but reminderQueue to the length of reminderDescriptions.
  void syncArrays(const Pads& pads);

  /// Replaces whole columns, of any lengths, as loading, opening and importing do.
  void setColumns(Columns columns);

  /// visit(column) for each of the sixteen, in the order of kFields.
  template <typename Visitor> void forEachColumn(Visitor&& visit) const {
    std::apply([&](const auto&... field) { (visit(m_columns.*(field.first)), ...); }, kFields);
  }
  /// Access to a column under construction, for decoders.
  template <typename T> static std::vector<T>& valuesOf(Column<T>& column) {
    return column.m_values;
  }

 private:
  Columns m_columns;
  quint64 m_revision = 0;
};

} // namespace tockwise
