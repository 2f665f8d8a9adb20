// How the sixteen kinds of elements look as property-list values, in one place for the store and
// for reminders documents. docs/store-format.md describes them.
//
// A Source gives the values of one file by a handle: integer(), date(), string() and data() return
// nothing where the value is of another kind, arrayCount() and pairCount() likewise; element() and
// find() are for containers only. A Sink makes values: boolean(), integer(), date(), string(),
// data(), array() and dictionary() return a handle.
#pragma once

#include "store/reminder_queue.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace tockwise::elements {

inline const QString kNil = QStringLiteral("nil");
inline const QString kType = QStringLiteral("type");
inline const QString kPath = QStringLiteral("path");
inline const QString kDays = QStringLiteral("days");
inline const QString kTimes = QStringLiteral("times");

// Each read takes one element; false when it is of a foreign kind. Values of older layouts ("" for
// an interval or a task, {"nil": "nil"} for an extra) become the blank ones. Any thread.

template <typename T> bool take(std::optional<T> found, T& value) {
  if (!found)
    return false;
  value = std::move(*found);
  return true;
}

template <typename Source> bool read(Source& source, typename Source::Handle from, Date& value) {
  return take(source.date(from), value);
}
template <typename Source> bool read(Source& source, typename Source::Handle from, qint64& value) {
  return take(source.integer(from), value);
}
template <typename Source> bool read(Source& source, typename Source::Handle from, Flag& value) {
  const auto number = source.integer(from);
  value = number.value_or(0) != 0;
  return number.has_value();
}
template <typename Source> bool read(Source& source, typename Source::Handle from, QString& value) {
  return take(source.string(from), value);
}
template <typename Source>
bool read(Source& source, typename Source::Handle from, QByteArray& value) {
  return take(source.data(from), value);
}

template <typename Source, typename T, size_t N>
bool readNumbers(Source& source, typename Source::Handle from, std::array<T, N>& values) {
  if (source.arrayCount(from) != qsizetype(N))
    return false;
  for (size_t i = 0; i < N; ++i) {
    const auto number = source.integer(source.element(from, qsizetype(i)));
    if (!number)
      return false;
    values[i] = T(*number);
  }
  return true;
}

template <typename Source, size_t N>
bool read(Source& source, typename Source::Handle from, std::array<qint64, N>& value) {
  std::array<qint64, N> numbers{};
  const bool known = source.isString(from, u"") || readNumbers(source, from, numbers);
  if (known)
    value = numbers;
  return known;
}

template <typename Source> bool isNilDictionary(Source& source, typename Source::Handle from) {
  if (source.pairCount(from) != 1)
    return false;
  const auto nil = source.find(from, kNil);
  return nil && source.isString(*nil, kNil);
}

template <typename Source> bool read(Source& source, typename Source::Handle from, Task& value) {
  if (source.isString(from, u"") || isNilDictionary(source, from))
    return true;
  if (source.pairCount(from) != 2)
    return false;
  const auto type = source.find(from, kType);
  const auto path = source.find(from, kPath);
  if (!type || !path)
    return false;
  const auto number = source.integer(*type);
  auto text = source.string(*path);
  if (!number || !text)
    return false;
  value = Task{false, *number, std::move(*text)};
  return true;
}

template <typename Source> bool read(Source& source, typename Source::Handle from, Extra& value) {
  if (isNilDictionary(source, from))
    return true;
  if (source.pairCount(from) != 2)
    return false;
  const auto days = source.find(from, kDays);
  const auto times = source.find(from, kTimes);
  Extra extra;
  if (!days || !times || !readNumbers(source, *days, extra.days) ||
      !readNumbers(source, *times, extra.times))
    return false;
  value = extra;
  return true;
}

/// What stands for an element of a foreign kind.
inline Reminder padRow(const ReminderQueue::Pads& pads) {
  Reminder row;
  row.reminderQueue = pads.now; // due at once: the user sees that its date was lost
  row.reminderDateTimeCreated = pads.now;
  row.reminderDateTimeModified = pads.now;
  row.reminderSendEmail = pads.sendEmail;
  row.reminderSendSMS = pads.sendSMS;
  return row;
}

/// Other readers refuse a whole file for half a surrogate pair, which is no character.
inline QString withoutHalfPairs(const QString& text) {
  if (text.isValidUtf16())
    return text;
  const QList<uint> characters = text.toUcs4();
  return QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()),
                           characters.size());
}

// Each write makes one element. Any one thread.

template <typename Sink> auto write(Sink& sink, Date value) {
  // Other readers know the years 1 to 9999 only, and would refuse the whole file for one date.
  constexpr Date kLastOfYear9999{252423993599.0};
  return sink.date(std::clamp(value, kDistantPast, kLastOfYear9999));
}
template <typename Sink> auto write(Sink& sink, qint64 value) {
  return value == 0 ? sink.boolean(false) : sink.integer(value);
}
template <typename Sink> auto write(Sink& sink, Flag value) {
  return sink.boolean(value);
}
template <typename Sink> auto write(Sink& sink, const QString& value) {
  return sink.string(withoutHalfPairs(value));
}
template <typename Sink> auto write(Sink& sink, const QByteArray& value) {
  return sink.data(value);
}

template <typename Sink, size_t N> auto write(Sink& sink, const std::array<qint64, N>& value) {
  std::array<decltype(sink.integer(0)), N> numbers;
  for (size_t i = 0; i < N; ++i)
    numbers[i] = sink.integer(value[i]);
  return sink.array(std::span(std::as_const(numbers)));
}

template <typename Sink> auto write(Sink& sink, const Task& value) {
  if (value.blank) {
    const std::array nil{sink.string(kNil)};
    return sink.dictionary(std::span(nil), std::span(nil));
  }
  const std::array keys{sink.string(kType), sink.string(kPath)};
  const std::array values{sink.integer(value.type), sink.string(withoutHalfPairs(value.path))};
  return sink.dictionary(std::span(keys), std::span(values));
}

template <typename Sink> auto write(Sink& sink, const Extra& value) {
  std::array<decltype(sink.boolean(true)), 7> days;
  for (size_t i = 0; i < days.size(); ++i)
    days[i] = sink.boolean(value.days[i]);
  const std::array keys{sink.string(kDays), sink.string(kTimes)};
  const std::array values{sink.array(std::span(std::as_const(days))), write(sink, value.times)};
  return sink.dictionary(std::span(keys), std::span(values));
}

} // namespace tockwise::elements
