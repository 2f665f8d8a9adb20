// Texts of reminders made lately, to be used again.
#pragma once

#include "store/value.h"

#include <vector>

namespace tockwise {

struct RecentReminder {
  QString fullDescription; // "full_description": the whole plain text
  QString description;     // "description": the text cut for display
  qint64 type = 0;         // "type"

  friend bool operator==(const RecentReminder&, const RecentReminder&) = default;
};

/// At most ten, oldest first. Main thread.
class RecentReminders {
 public:
  static constexpr qsizetype kMost = 10;
  static constexpr qsizetype kShown = 40; // characters shown, then "..."

  const std::vector<RecentReminder>& entries() const { return m_entries; }
  /// Appends an entry for text and drops the oldest of eleven.
  void append(const QString& text);
  void clear();
  quint64 revision() const { return m_revision; }

  /// The stored form: an array of dictionaries. An element that is none is left out, counted in
  /// the result.
  int setStored(const Value& stored);
  Value stored() const;

 private:
  std::vector<RecentReminder> m_entries;
  quint64 m_revision = 0;
};

} // namespace tockwise
