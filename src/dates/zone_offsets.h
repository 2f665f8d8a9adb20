// The offsets of one time zone from UTC, as spans between its clock changes. ICU knows them; this
// keeps the ones that were asked for, because asking ICU costs microseconds.
#pragma once

#include <QtGlobal>

#include <unicode/basictz.h>

#include <memory>
#include <vector>

namespace tockwise {

/// A stretch of time with one offset. All times in seconds since 1970-01-01 00:00:00 UTC.
struct OffsetSpan {
  qint64 begin = 0;
  qint64 end = 0;    // the first second of the next span
  qint64 offset = 0; // local time less UTC, seconds
  /// From here until there a wall time belongs to this one instant: no clock change skips it or
  /// shows it a second time.
  qint64 settledBegin = 0;
  qint64 settledEnd = 0;

  bool holds(qint64 instant) const { return instant >= begin && instant < end; }
  bool isSettled(qint64 instant) const { return instant >= settledBegin && instant < settledEnd; }
};

/// One thread per object.
class ZoneOffsets {
 public:
  /// zone: any ICU zone whose clock changes can be listed (all that createTimeZone makes).
  explicit ZoneOffsets(const icu::BasicTimeZone& zone);

  /// The span that holds instant. The reference is valid until the next call.
  const OffsetSpan& at(qint64 instant);

 private:
  OffsetSpan load(qint64 instant) const;

  std::unique_ptr<icu::BasicTimeZone> m_zone;
  std::vector<OffsetSpan> m_spans; // sorted, disjoint, not complete
  size_t m_last = 0;               // most questions are about the span of the one before
};

} // namespace tockwise
