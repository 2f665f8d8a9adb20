#include "store/queue_codec.h"

#include "base/log.h"

#include <cmath>

namespace tockwise {
namespace {

using plist::Kind;
using plist::Reader;
using plist::Ref;
using plist::Writer;

const QString kNil = QStringLiteral("nil");
const QString kType = QStringLiteral("type");
const QString kPath = QStringLiteral("path");
const QString kDays = QStringLiteral("days");
const QString kTimes = QStringLiteral("times");

// Each reads one element; nothing when it is of a foreign kind.

std::optional<qint64> readNumber(const Reader& reader, Ref ref) {
  switch (reader.kind(ref)) {
  case Kind::Boolean:
    return reader.boolean(ref) ? 1 : 0;
  case Kind::Integer:
    return reader.integer(ref);
  case Kind::Real: {
    const double real = reader.real(ref);
    if (std::isfinite(real) && real == std::trunc(real) && std::fabs(real) < 9e15)
      return qint64(real);
    return std::nullopt;
  }
  default:
    return std::nullopt;
  }
}

bool readElement(const Reader& reader, Ref ref, Date& value) {
  if (reader.kind(ref) != Kind::Date || !std::isfinite(reader.date(ref).seconds))
    return false;
  // Readers of other make know no year before 1.
  value = isDistantPast(reader.date(ref)) ? kDistantPast : reader.date(ref);
  return true;
}

bool readElement(const Reader& reader, Ref ref, qint64& value) {
  const auto number = readNumber(reader, ref);
  value = number.value_or(0);
  return number.has_value();
}

bool readElement(const Reader& reader, Ref ref, Flag& value) {
  const auto number = readNumber(reader, ref);
  value = number.value_or(0) != 0;
  return number.has_value();
}

bool readElement(const Reader& reader, Ref ref, QString& value) {
  if (reader.kind(ref) != Kind::String)
    return false;
  value = reader.string(ref);
  return true;
}

bool readElement(const Reader& reader, Ref ref, QByteArray& value) {
  if (reader.kind(ref) != Kind::Data)
    return false;
  value = reader.data(ref);
  return true;
}

template <typename T, size_t N>
bool readNumbers(const Reader& reader, Ref ref, std::array<T, N>& values) {
  if (reader.kind(ref) != Kind::Array || reader.count(ref) != qsizetype(N))
    return false;
  for (size_t i = 0; i < N; ++i) {
    const auto number = readNumber(reader, reader.element(ref, qsizetype(i)));
    if (!number)
      return false;
    values[i] = T(*number);
  }
  return true;
}

bool isEmptyString(const Reader& reader, Ref ref) {
  return reader.kind(ref) == Kind::String && reader.count(ref) == 0;
}

template <size_t N> bool readElement(const Reader& reader, Ref ref, std::array<qint64, N>& value) {
  return isEmptyString(reader, ref) || readNumbers(reader, ref, value);
}

bool isNilDictionary(const Reader& reader, Ref ref) {
  if (reader.kind(ref) != Kind::Dictionary || reader.count(ref) != 1)
    return false;
  const auto nil = reader.find(ref, kNil);
  return nil && reader.kind(*nil) == Kind::String && reader.string(*nil) == kNil;
}

bool readElement(const Reader& reader, Ref ref, Task& value) {
  if (isEmptyString(reader, ref) || isNilDictionary(reader, ref))
    return true;
  if (reader.kind(ref) != Kind::Dictionary || reader.count(ref) != 2)
    return false;
  const auto type = reader.find(ref, kType);
  const auto path = reader.find(ref, kPath);
  if (!type || !path || reader.kind(*path) != Kind::String)
    return false;
  const auto number = readNumber(reader, *type);
  if (!number)
    return false;
  value = Task{false, *number, reader.string(*path)};
  return true;
}

bool readElement(const Reader& reader, Ref ref, Extra& value) {
  if (isNilDictionary(reader, ref))
    return true;
  if (reader.kind(ref) != Kind::Dictionary || reader.count(ref) != 2)
    return false;
  const auto days = reader.find(ref, kDays);
  const auto times = reader.find(ref, kTimes);
  Extra extra;
  if (!days || !times || !readNumbers(reader, *days, extra.days) ||
      !readNumbers(reader, *times, extra.times))
    return false;
  value = extra;
  return true;
}

// What stands for an element of a foreign kind.
Reminder padRow(const ReminderQueue::Pads& pads) {
  Reminder row;
  row.reminderQueue = pads.now; // due at once: the user sees that its date was lost
  row.reminderDateTimeCreated = pads.now;
  row.reminderDateTimeModified = pads.now;
  row.reminderSendEmail = pads.sendEmail;
  row.reminderSendSMS = pads.sendSMS;
  return row;
}

// Other readers know the years 1 to 9999 only, and would refuse the whole file for one date.
Writer::Object writeElement(Writer& writer, Date value) {
  constexpr Date kLastOfYear9999{252423993599.0};
  return writer.date(std::clamp(value, kDistantPast, kLastOfYear9999));
}
Writer::Object writeElement(Writer& writer, qint64 value) {
  return value == 0 ? writer.boolean(false) : writer.integer(value);
}
Writer::Object writeElement(Writer& writer, Flag value) {
  return writer.boolean(value);
}
// Half a surrogate pair would have the same effect; it is no character.
Writer::Object writeElement(Writer& writer, const QString& value) {
  if (value.isValidUtf16())
    return writer.string(value);
  const QList<uint> characters = value.toUcs4();
  return writer.string(QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()),
                                         characters.size()));
}
Writer::Object writeElement(Writer& writer, const QByteArray& value) {
  return writer.data(value);
}

template <size_t N>
Writer::Object writeElement(Writer& writer, const std::array<qint64, N>& value) {
  std::array<Writer::Object, N> numbers;
  for (size_t i = 0; i < N; ++i)
    numbers[i] = writer.integer(value[i]);
  return writer.array(numbers);
}

Writer::Object writeElement(Writer& writer, const Task& value) {
  if (value.blank) {
    const Writer::Object nil = writer.string(kNil);
    return writer.dictionary({{nil}}, {{nil}});
  }
  const std::array keys{writer.string(kType), writer.string(kPath)};
  const std::array values{writer.integer(value.type), writer.string(value.path)};
  return writer.dictionary(keys, values);
}

Writer::Object writeElement(Writer& writer, const Extra& value) {
  std::array<Writer::Object, 7> days;
  for (size_t i = 0; i < days.size(); ++i)
    days[i] = writer.boolean(value.days[i]);
  const std::array keys{writer.string(kDays), writer.string(kTimes)};
  const std::array values{writer.array(days), writeElement(writer, value.times)};
  return writer.dictionary(keys, values);
}

} // namespace

QStringList columnKeys() {
  static const Columns columns;
  QStringList keys;
  std::apply([&](const auto&... field) { (keys.append((columns.*(field.first)).key()), ...); },
             kFields);
  return keys;
}

DecodedColumns decodeColumns(const Reader& reader, Ref dictionary,
                             const ReminderQueue::Pads& pads) {
  DecodedColumns decoded;
  const Reminder pad = padRow(pads);
  const auto decode = [&](auto& column, auto field) {
    const auto array = reader.find(dictionary, column.key());
    if (!array)
      return;
    if (reader.kind(*array) != Kind::Array) {
      logLine(QStringLiteral("%1 is no array").arg(column.key()));
      ++decoded.foreignElements;
      return;
    }
    auto& values = ReminderQueue::valuesOf(column);
    values.reserve(size_t(reader.count(*array)));
    for (qsizetype i = 0; i < reader.count(*array); ++i) {
      typename std::remove_reference_t<decltype(column)>::value_type value{};
      if (!readElement(reader, reader.element(*array, i), value)) {
        logLine(QStringLiteral("%1: element %2 is of a foreign kind").arg(column.key()).arg(i));
        ++decoded.foreignElements;
        value = pad.*field;
        if constexpr (std::is_same_v<decltype(value), QString>) {
          if (column.key() == u"reminderUUID")
            value = UUIDString();
        }
      }
      values.push_back(std::move(value));
    }
  };
  std::apply(
      [&](const auto&... field) { (decode(decoded.columns.*(field.first), field.second), ...); },
      kFields);
  return decoded;
}

void encodeColumns(const Columns& columns, Writer& writer, std::vector<Writer::Object>& keys,
                   std::vector<Writer::Object>& values) {
  const auto encode = [&](const auto& column) {
    std::vector<Writer::Object> elements;
    elements.reserve(size_t(column.size()));
    for (const auto& element : column.values())
      elements.push_back(writeElement(writer, element));
    keys.push_back(writer.string(column.key()));
    values.push_back(writer.array(elements));
  };
  std::apply([&](const auto&... field) { (encode(columns.*(field.first)), ...); }, kFields);
}

} // namespace tockwise
