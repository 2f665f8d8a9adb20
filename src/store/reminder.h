// The values of one reminder: sixteen fields, named after the keys under which the queue stores
// them column by column (see reminder_queue.h).
#pragma once

#include "base/date.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <array>

namespace tockwise {

/// Repeat interval: months, days, hours, minutes, each 0 or more. All 0: does not repeat.
using Interval = std::array<qint64, 4>;
inline constexpr Interval kBlankInterval{0, 0, 0, 0};

/// Advance notice: days, hours, minutes before the fire date at which the reminder fires.
using Offset = std::array<qint64, 3>;
inline constexpr Offset kBlankOffset{0, 0, 0};

/// Extra repeat rule: allowed weekdays (0 = Sunday) and a daily time window [start hour, start
/// minute, end hour, end minute], local time; equal start and end: no window.
struct Extra {
  std::array<bool, 7> days{true, true, true, true, true, true, true};
  std::array<qint64, 4> times{0, 0, 0, 0};

  friend bool operator==(const Extra&, const Extra&) = default;
};
inline constexpr Extra kBlankExtra{};

/// What is opened when the reminder fires. Stored as {"type", "path"}, a blank one as
/// {"nil": "nil"}.
struct Task {
  enum Type : qint64 { WebAddress = 0, Media = 1, Document = 2, Application = 3, Script = 4 };
  bool blank = true;
  qint64 type = 0;
  QString path;

  friend bool operator==(const Task&, const Task&) = default;
};

inline constexpr char16_t kRegularType[] = u"regular";

/// One row of the queue, in the order in which an appended reminder extends the columns.
struct Reminder {
  Date reminderQueue; // the fire date
  Date reminderDateTimeCreated;
  Date reminderDateTimeFired = kDistantPast; // the distant past: never
  Date reminderDateTimeModified;
  qint64 reminderRecent = 0; // number of firings
  QString reminderUUID;
  QString reminderDescriptions; // the plain text
  QByteArray reminderRTFs;      // the archived rich text, or empty
  QString reminderTypes = QString::fromUtf16(kRegularType);
  Interval reminderIntervals = kBlankInterval;
  Task reminderTasks;
  Extra reminderExtras;
  Offset reminderOffsets = kBlankOffset;
  QString importedUIDs; // the calendar event it was imported from, or ""
  bool reminderSendSMS = false;
  bool reminderSendEmail = false;

  friend bool operator==(const Reminder&, const Reminder&) = default;
};

/// A new random UUID: 36 characters, upper-case, hyphens in groups of 8-4-4-4-12.
QString UUIDString();

} // namespace tockwise
