#include "dates/zone_offsets.h"

#include <unicode/tzrule.h>
#include <unicode/tztrans.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace tockwise {
namespace {

// A zone has two spans a year; more than this many are only wanted by stray dates of a far future.
constexpr size_t kMostSpans = 2048;
constexpr qint64 kForever = std::numeric_limits<qint64>::max() / 4;

qint64 totalOffset(const icu::TimeZoneRule* rule) {
  return (qint64(rule->getRawOffset()) + rule->getDSTSavings()) / 1000;
}

qint64 change(const icu::TimeZoneTransition& transition) {
  return std::llabs(totalOffset(transition.getTo()) - totalOffset(transition.getFrom()));
}

} // namespace

ZoneOffsets::ZoneOffsets(const icu::BasicTimeZone& zone) : m_zone(zone.clone()) {}

const OffsetSpan& ZoneOffsets::at(qint64 instant) {
  if (m_last < m_spans.size() && m_spans[m_last].holds(instant))
    return m_spans[m_last];
  auto after =
      std::upper_bound(m_spans.begin(), m_spans.end(), instant,
                       [](qint64 value, const OffsetSpan& span) { return value < span.begin; });
  if (after == m_spans.begin() || !std::prev(after)->holds(instant)) {
    if (m_spans.size() >= kMostSpans) {
      m_spans.clear();
      after = m_spans.end();
    }
    after = std::next(m_spans.insert(after, load(instant)));
  }
  m_last = size_t(std::prev(after) - m_spans.begin());
  return m_spans[m_last];
}

OffsetSpan ZoneOffsets::load(qint64 instant) const {
  const UDate time = double(instant) * 1000;
  UErrorCode status = U_ZERO_ERROR;
  int32_t raw = 0;
  int32_t savings = 0;
  m_zone->getOffset(time, false, raw, savings, status);
  OffsetSpan span{-kForever, kForever, (qint64(raw) + savings) / 1000, -kForever, kForever};
  icu::TimeZoneTransition transition;
  if (m_zone->getPreviousTransition(time, true, transition)) {
    span.begin = qint64(std::floor(transition.getTime() / 1000));
    span.settledBegin = span.begin + change(transition);
  }
  if (m_zone->getNextTransition(time, false, transition)) {
    span.end = qint64(std::floor(transition.getTime() / 1000));
    span.settledEnd = span.end - change(transition);
  }
  return span;
}

} // namespace tockwise
