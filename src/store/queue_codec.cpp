#include "store/queue_codec.h"

#include "base/log.h"
#include "store/element_layout.h"

#include <cmath>

namespace tockwise {
namespace {

using plist::Kind;
using plist::Reader;
using plist::Ref;
using plist::Writer;

// The values of a property list.
class ListSource {
 public:
  using Handle = Ref;

  explicit ListSource(const Reader& reader) : m_reader(reader) {}

  std::optional<qint64> integer(Ref ref) const {
    switch (m_reader.kind(ref)) {
    case Kind::Boolean:
      return m_reader.boolean(ref) ? 1 : 0;
    case Kind::Integer:
      return m_reader.integer(ref);
    case Kind::Real: {
      const double real = m_reader.real(ref);
      if (std::isfinite(real) && real == std::trunc(real) && std::fabs(real) < 9e15)
        return qint64(real);
      return std::nullopt;
    }
    default:
      return std::nullopt;
    }
  }
  std::optional<Date> date(Ref ref) const {
    if (m_reader.kind(ref) != Kind::Date || !std::isfinite(m_reader.date(ref).seconds))
      return std::nullopt;
    // Readers of other make know no year before 1.
    return isDistantPast(m_reader.date(ref)) ? kDistantPast : m_reader.date(ref);
  }
  std::optional<QString> string(Ref ref) const {
    return m_reader.kind(ref) == Kind::String ? std::optional(m_reader.string(ref)) : std::nullopt;
  }
  std::optional<QByteArray> data(Ref ref) const {
    return m_reader.kind(ref) == Kind::Data ? std::optional(m_reader.data(ref)) : std::nullopt;
  }
  bool isString(Ref ref, QStringView wanted) const { return m_reader.isString(ref, wanted); }
  std::optional<qsizetype> arrayCount(Ref ref) const { return countOf(ref, Kind::Array); }
  std::optional<qsizetype> pairCount(Ref ref) const { return countOf(ref, Kind::Dictionary); }
  Ref element(Ref array, qsizetype at) const { return m_reader.element(array, at); }
  std::optional<Ref> find(Ref dictionary, QStringView key) const {
    return m_reader.find(dictionary, key);
  }

 private:
  std::optional<qsizetype> countOf(Ref ref, Kind kind) const {
    return m_reader.kind(ref) == kind ? std::optional(m_reader.count(ref)) : std::nullopt;
  }

  const Reader& m_reader;
};

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
  ListSource source(reader);
  const Reminder pad = elements::padRow(pads);
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
    // Equal elements are one object of the list: what one reminder has, the next one often shares.
    Ref before;
    bool isRead = false;
    for (qsizetype i = 0; i < reader.count(*array); ++i) {
      const Ref element = reader.element(*array, i);
      if (isRead && element == before) {
        values.push_back(values.back());
        continue;
      }
      typename std::remove_reference_t<decltype(column)>::value_type value{};
      before = element;
      isRead = elements::read(source, element, value);
      if (!isRead) {
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
    std::vector<Writer::Object> encoded;
    encoded.reserve(size_t(column.size()));
    for (const auto& element : column.values())
      encoded.push_back(elements::write(writer, element));
    keys.push_back(writer.string(column.key()));
    values.push_back(writer.array(encoded));
  };
  std::apply([&](const auto&... field) { (encode(columns.*(field.first)), ...); }, kFields);
}

} // namespace tockwise
