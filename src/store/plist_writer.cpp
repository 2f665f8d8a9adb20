#include "store/plist_writer.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>

namespace tockwise::plist {
namespace {

constexpr qsizetype kSmallContainer = 32; // references; larger ones are hardly ever equal
constexpr qsizetype kSmallData = 64;      // bytes; the same

int bytesFor(quint64 largest) {
  int size = 1;
  while (size < 8 && largest >> (8 * size) != 0)
    ++size;
  return size;
}

bool isAscii(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

} // namespace

Writer::Writer() {
  m_scalars.reserve(1 << 16);
}

// Big-endian, in the first size bytes at to.
void Writer::putNumber(char* to, quint64 value, int size) {
  for (int i = size - 1; i >= 0; --i, value >>= 8)
    to[i] = char(value & 0xFF);
}

void Writer::appendNumber(QByteArray& to, quint64 value, int size) {
  std::array<char, sizeof(value)> bytes{};
  putNumber(bytes.data(), value, size);
  to.append(bytes.data(), size);
}

// One, two and four bytes are unsigned, eight are signed.
void Writer::appendInteger(QByteArray& to, qint64 value) {
  const auto bits = quint64(value);
  const int log = bits <= 0xFF ? 0 : bits <= 0xFFFF ? 1 : bits <= 0xFFFFFFFF ? 2 : 3;
  to.append(char(0x10 | log));
  appendNumber(to, bits, 1 << log);
}

void Writer::appendMarker(QByteArray& to, quint8 marker, quint64 count) {
  if (count < 15) {
    to.append(char(marker | count));
    return;
  }
  to.append(char(marker | 0x0F));
  appendInteger(to, qint64(count));
}

Writer::Object Writer::scalar(const QByteArray& encoded) {
  const auto object = Object(m_entries.size());
  m_entries.push_back({0, 0, quint64(m_scalars.size()), quint64(encoded.size())});
  m_scalars.append(encoded);
  return object;
}

Writer::Object Writer::boolean(bool value) {
  const QByteArray encoded(1, char(value ? 0x09 : 0x08));
  const auto known = m_known.constFind(encoded);
  return known != m_known.cend() ? *known : *m_known.insert(encoded, scalar(encoded));
}

Writer::Object Writer::integer(qint64 value) {
  QByteArray encoded;
  appendInteger(encoded, value);
  const auto known = m_known.constFind(encoded);
  return known != m_known.cend() ? *known : *m_known.insert(encoded, scalar(encoded));
}

Writer::Object Writer::real(double value) {
  QByteArray encoded(1, char(0x23));
  appendNumber(encoded, std::bit_cast<quint64>(value), 8);
  const auto known = m_known.constFind(encoded);
  return known != m_known.cend() ? *known : *m_known.insert(encoded, scalar(encoded));
}

Writer::Object Writer::date(Date value) {
  QByteArray encoded(1, char(0x33));
  appendNumber(encoded, std::bit_cast<quint64>(value.seconds), 8);
  const auto known = m_known.constFind(encoded);
  return known != m_known.cend() ? *known : *m_known.insert(encoded, scalar(encoded));
}

Writer::Object Writer::uid(quint64 index) {
  QByteArray encoded;
  const int size = bytesFor(index);
  encoded.append(char(0x80 | (size - 1)));
  appendNumber(encoded, index, size);
  return scalar(encoded);
}

Writer::Object Writer::data(QByteArrayView bytes) {
  QByteArray encoded;
  appendMarker(encoded, 0x40, quint64(bytes.size()));
  encoded.append(bytes);
  if (bytes.size() > kSmallData)
    return scalar(encoded);
  const auto known = m_known.constFind(encoded);
  return known != m_known.cend() ? *known : *m_known.insert(encoded, scalar(encoded));
}

Writer::Object Writer::string(const QString& text) {
  if (const auto known = m_knownStrings.constFind(text); known != m_knownStrings.cend())
    return *known;
  QByteArray encoded;
  if (isAscii(text)) {
    appendMarker(encoded, 0x50, quint64(text.size()));
    encoded.append(text.toLatin1());
  } else {
    appendMarker(encoded, 0x60, quint64(text.size()));
    const qsizetype start = encoded.size();
    encoded.resize(start + 2 * text.size());
    qToBigEndian<char16_t>(text.utf16(), text.size(), encoded.data() + start);
  }
  return *m_knownStrings.insert(text, scalar(encoded));
}

Writer::Object Writer::container(quint8 marker, quint32 size, std::span<const Object> first,
                                 std::span<const Object> second) {
  const qsizetype references = qsizetype(first.size()) + qsizetype(second.size());
  QByteArray identity;
  if (references <= kSmallContainer) {
    identity.reserve(1 + references * qsizetype(sizeof(Object)));
    identity.append(char(marker));
    for (const auto part : {first, second})
      identity.append(reinterpret_cast<const char*>(part.data()), qsizetype(part.size_bytes()));
    if (const auto known = m_knownContainers.constFind(identity); known != m_knownContainers.cend())
      return *known;
  }
  const auto object = Object(m_entries.size());
  m_entries.push_back({marker, size, m_references.size(), 0});
  m_references.insert(m_references.end(), first.begin(), first.end());
  m_references.insert(m_references.end(), second.begin(), second.end());
  if (!identity.isEmpty())
    m_knownContainers.insert(identity, object);
  return object;
}

Writer::Object Writer::array(std::span<const Object> elements) {
  return container(0xA0, quint32(elements.size()), elements, {});
}

Writer::Object Writer::dictionary(std::span<const Object> keys, std::span<const Object> values) {
  Q_ASSERT(keys.size() == values.size());
  return container(0xD0, quint32(keys.size()), keys, values);
}

Writer::Object Writer::value(const Value& value) {
  if (const auto* elements = value.get<Value::Array>()) {
    std::vector<Object> objects;
    for (const Value& element : *elements)
      objects.push_back(this->value(element));
    return array(objects);
  }
  if (const auto* pairs = value.get<Value::Dictionary>()) {
    std::vector<Object> keys;
    std::vector<Object> values;
    for (const auto& [key, element] : *pairs) {
      keys.push_back(string(key));
      values.push_back(this->value(element));
    }
    return dictionary(keys, values);
  }
  if (const auto* flag = value.get<bool>())
    return boolean(*flag);
  if (const auto* number = value.get<qint64>())
    return integer(*number);
  if (const auto* number = value.get<double>())
    return real(*number);
  if (const auto* instant = value.get<Date>())
    return date(*instant);
  if (const auto* bytes = value.get<QByteArray>())
    return data(*bytes);
  if (const auto* index = value.get<Value::Uid>())
    return uid(index->index);
  const auto* text = value.get<QString>();
  return string(text ? *text : QString());
}

QByteArray Writer::finish(Object root) const {
  const int referenceSize = bytesFor(m_entries.size() - 1);
  QByteArray file("bplist00");
  file.reserve(qsizetype(quint64(m_scalars.size()) + m_references.size() * quint64(referenceSize) +
                         m_entries.size() * 8 + 64));
  std::vector<quint64> offsets;
  offsets.reserve(m_entries.size());
  for (const Entry& entry : m_entries) {
    offsets.push_back(quint64(file.size()));
    if (entry.marker == 0) {
      file.append(m_scalars.constData() + entry.start, qsizetype(entry.length));
      continue;
    }
    appendMarker(file, entry.marker, entry.size);
    const quint64 references = entry.marker == 0xD0 ? 2 * quint64(entry.size) : entry.size;
    const qsizetype start = file.size();
    file.resize(start + qsizetype(references) * referenceSize);
    char* to = file.data() + start;
    for (quint64 i = 0; i < references; ++i, to += referenceSize)
      putNumber(to, m_references[entry.start + i], referenceSize);
  }
  const quint64 table = quint64(file.size());
  const int offsetSize = bytesFor(table);
  file.resize(file.size() + qsizetype(offsets.size()) * offsetSize);
  char* entryAt = file.data() + table;
  for (const quint64 offset : offsets) {
    putNumber(entryAt, offset, offsetSize);
    entryAt += offsetSize;
  }
  file.append(QByteArray(6, '\0'));
  file.append(char(offsetSize));
  file.append(char(referenceSize));
  appendNumber(file, m_entries.size(), 8);
  appendNumber(file, root, 8);
  appendNumber(file, table, 8);
  return file;
}

} // namespace tockwise::plist
