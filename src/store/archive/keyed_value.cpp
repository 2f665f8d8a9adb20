#include "store/archive/keyed_value.h"

#include "store/archive/archive_values.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_writer.h"

#include <QHash>

namespace tockwise {
namespace {

using Uid = KeyedArchive::Uid;
using plist::Kind;

constexpr int kMostDepth = 128;

Error damagedValue(const QString& what) {
  return Error{Error::Kind::Damaged, what};
}

// Decodes each object once; one that several others name is copied, within the limit.
class ValueDecoder {
 public:
  explicit ValueDecoder(const KeyedArchive& archive)
      : m_archive(archive), m_bytesLeft(archive.mostUnfoldedBytes()) {}

  Result<Value> decode(Uid uid, int depth) {
    if (const auto known = m_known.constFind(uid); known != m_known.cend()) {
      if (known->isOpen)
        return damagedValue(QStringLiteral("an archived object holds itself"));
      if (!take(known->bytes))
        return damagedValue(QStringLiteral("the archive unfolds beyond reason"));
      return known->value;
    }
    if (depth > kMostDepth)
      return damagedValue(QStringLiteral("the archive is nested beyond reason"));
    m_known.insert(uid, {});
    const qsizetype before = m_bytesLeft;
    if (!take(qsizetype(sizeof(Value))))
      return damagedValue(QStringLiteral("the archive unfolds beyond reason"));
    auto value = decodeNew(uid, depth);
    if (value)
      m_known[uid] = {value.value(), before - m_bytesLeft, false};
    return value;
  }

 private:
  struct Known {
    Value value;
    qsizetype bytes = 0; // that it takes with all that it holds
    bool isOpen = true;  // still being decoded
  };

  bool take(qsizetype bytes) {
    if (bytes > m_bytesLeft)
      return false;
    m_bytesLeft -= bytes;
    return true;
  }

  Result<Value> decodeNew(Uid uid, int depth) {
    if (uid == KeyedArchive::kNil)
      return Value();
    if (!m_archive.names(uid))
      return damagedValue(QStringLiteral("the archive has no object %1").arg(uid));
    if (m_archive.kind(uid) == Kind::Dictionary)
      return decodeRecord(uid, depth);
    if (m_archive.kind(uid) == Kind::Date) {
      const auto date = dateAt(m_archive, uid);
      return date ? Result<Value>(Value(*date))
                  : damagedValue(QStringLiteral("a date is no number"));
    }
    if (m_archive.kind(uid) == Kind::Array || m_archive.kind(uid) == Kind::Uid ||
        m_archive.kind(uid) == Kind::Null)
      return damagedValue(QStringLiteral("the archive's object %1 is of no known kind").arg(uid));
    return m_archive.list().value(m_archive.ref(uid));
  }

  Result<Value> decodeRecord(Uid uid, int depth) {
    const KeyedArchive::ClassRecord* record = m_archive.classOf(uid);
    if (!m_archive.isRecord(uid))
      return damagedValue(QStringLiteral("the archive's object %1 has no class").arg(uid));
    if (record->contains(u"NSDictionary"))
      return decodeDictionary(uid, depth);
    if (record->contains(u"NSArray"))
      return decodeArray(uid, depth);
    if (record->contains(u"NSNull"))
      return Value();
    if (auto text = stringAt(m_archive, uid))
      return Value(std::move(*text));
    if (auto bytes = dataAt(m_archive, uid))
      return Value(std::move(*bytes));
    if (const auto date = dateAt(m_archive, uid))
      return Value(*date);
    if (const auto flag = booleanAt(m_archive, uid))
      return Value(*flag);
    if (record->contains(u"NSNumber"))
      return decodeNumber(uid);
    return damagedValue(QStringLiteral("the archive holds a %1, which has no place here")
                            .arg(inMessage(record->name)));
  }

  Result<Value> decodeNumber(Uid uid) {
    const auto integer = integerAt(m_archive, uid);
    if (integer && m_archive.field(uid, u"NS.intval"))
      return Value(*integer);
    if (const auto real = realAt(m_archive, uid))
      return Value(*real);
    return damagedValue(QStringLiteral("a number in the archive is none"));
  }

  Result<Value> decodeArray(Uid uid, int depth) {
    const auto elements = elementsAt(m_archive, uid);
    if (!elements)
      return damagedValue(QStringLiteral("an array in the archive is damagedValue"));
    Value::Array array;
    for (const Uid element : *elements) {
      auto value = decode(element, depth + 1);
      if (!value)
        return value;
      array.push_back(std::move(value).value());
    }
    return Value(std::move(array));
  }

  Result<Value> decodeDictionary(Uid uid, int depth) {
    const auto pairs = pairsAt(m_archive, uid);
    if (!pairs)
      return damagedValue(QStringLiteral("a dictionary in the archive is damagedValue"));
    Value::Dictionary dictionary;
    QHash<QString, size_t> places;
    for (const auto& [key, element] : *pairs) {
      auto name = stringAt(m_archive, key);
      if (!name)
        return damagedValue(
            QStringLiteral("a dictionary in the archive has a key that is no text"));
      auto value = decode(element, depth + 1);
      if (!value)
        return value;
      if (places.contains(*name))
        continue; // keys are unique: the first one holds
      places.insert(*name, dictionary.size());
      dictionary.emplace_back(std::move(*name), std::move(value).value());
    }
    return Value(std::move(dictionary));
  }

  const KeyedArchive& m_archive;
  QHash<Uid, Known> m_known;
  qsizetype m_bytesLeft;
};

// Objects come before what they hold.
KeyedWriter::Uid encode(KeyedWriter& writer, const Value& value) {
  if (const auto* array = value.get<Value::Array>()) {
    const KeyedWriter::Uid uid = writer.reserve();
    std::vector<KeyedWriter::Uid> elements;
    elements.reserve(array->size());
    for (const Value& element : *array)
      elements.push_back(encode(writer, element));
    writer.setArray(uid, elements);
    return uid;
  }
  if (const auto* pairs = value.get<Value::Dictionary>()) {
    const KeyedWriter::Uid uid = writer.reserve();
    std::vector<KeyedWriter::Uid> keys;
    std::vector<KeyedWriter::Uid> values;
    for (const auto& [key, element] : *pairs) {
      keys.push_back(writer.string(key));
      values.push_back(encode(writer, element));
    }
    writer.setDictionary(uid, keys, values);
    return uid;
  }
  if (const auto* flag = value.get<bool>())
    return writer.boolean(*flag);
  if (const auto* number = value.get<qint64>())
    return writer.integer(*number);
  if (const auto* number = value.get<double>())
    return writer.real(*number);
  if (const auto* instant = value.get<Date>())
    return writer.date(*instant);
  if (const auto* bytes = value.get<QByteArray>())
    return writer.data(*bytes);
  if (const auto* text = value.get<QString>())
    return writer.string(*text);
  return writer.null();
}

} // namespace

Result<Value> unarchiveValue(const QByteArray& archive) {
  const auto opened = KeyedArchive::open(archive);
  if (!opened)
    return opened.error();
  const KeyedArchive& table = *opened.value();
  return ValueDecoder(table).decode(table.root(), 1);
}

QByteArray archiveValue(const Value& value) {
  KeyedWriter writer;
  return writer.finish(encode(writer, value));
}

} // namespace tockwise
