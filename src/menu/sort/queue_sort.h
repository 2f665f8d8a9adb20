// The order of the queue: one of ten, kept in the setting "sortType". All sixteen columns are
// permuted together.
//
// The order that results is that of exchanging neighbours which are strictly out of order until
// there are none: equal keys keep their relative order. A date that is no number counts as later
// than every other.
#pragma once

#include "ports/prompter.h"
#include "store/reminder_queue.h"
#include "store/settings.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace tockwise {

/// The codes of the setting "sortType".
enum class SortType : int {
  Date = 1,            // soonest first
  DateReverse,         // latest first
  DateCreated,         // newest first
  DateCreatedReverse,  // oldest first
  Name,                // A to Z, case ignored
  NameReverse,         // Z to A
  DateFired,           // most recently fired first
  DateFiredReverse,    // longest ago (never fired) first
  DateModified,        // most recently modified first
  DateModifiedReverse, // least recently modified first
};

/// An order as the menu shows it.
struct SortOrder {
  SortType type;
  const char16_t* title; // of the menu item: "By Date"
  const char16_t* text;  // of the queue's header: "date"
};

/// The ten, in the order of their codes.
std::span<const SortOrder> sortOrders();

/// The order that would put queue as type has it, as ReminderQueue::permute takes it; nothing when
/// it is in that order already. An error when the columns are too short to be compared.
Result<std::optional<std::vector<quint32>>> orderOf(const ReminderQueue& queue, SortType type);

/// Main thread.
class QueueSort {
 public:
  /// Everything given must outlive it. saveDefaults is called at the end of each sort and must
  /// cost next to nothing when nothing has changed.
  QueueSort(ReminderQueue& queue, Settings& settings, Prompter& prompter,
            std::function<void()> saveDefaults);

  /// Puts the queue in the order of the setting and saves; a queue that is in order already is
  /// not touched, and one that is as the last sort left it is not even looked at. A setting that
  /// is none of the ten beeps and sorts nothing. When the columns disagree in length, and the
  /// queue is out of order, that is logged, and nothing is moved or saved.
  void sort();

  /// The chosen order; nothing when the setting is none of the ten.
  std::optional<SortType> sortType() const;
  /// "date", "reverse creation date", …: the order's text; beeps, and "", when there is none.
  QString sortTypeText() const;
  /// Chooses an order; the next sort applies it. Some of the choices go to the disk at once.
  void sortBy(SortType type);

 private:
  ReminderQueue& m_queue;
  Settings& m_settings;
  Prompter& m_prompter;
  std::function<void()> m_saveDefaults;
  QString m_key;
  std::optional<quint64> m_sortedRevision;
  std::optional<SortType> m_sortedType;
};

} // namespace tockwise
