#include "store/plist_reader.h"

#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace tockwise::plist {
namespace {

constexpr qsizetype kHeader = 8;
constexpr qsizetype kTrailer = 32;

Error damaged(const QString& what) {
  return Error{Error::Kind::Damaged, QStringLiteral("not a sound property list: %1").arg(what)};
}

// An unsigned number of 1 to 8 bytes.
quint64 bigEndian(const char* bytes, int size) {
  if (size == 1)
    return quint8(*bytes);
  if (size == 2)
    return qFromBigEndian<quint16>(bytes);
  quint64 value = 0;
  for (int i = 0; i < size; ++i)
    value = value << 8 | quint8(bytes[i]);
  return value;
}

} // namespace

quint64 Reader::number(quint64 offset, int size) const {
  return bigEndian(m_bytes.constData() + offset, size);
}

// An array or a dictionary that is not empty.
bool Reader::holdsOthers(quint32 index) const {
  const Object& object = m_objects[index];
  return object.kind >= Kind::Array && object.size > 0;
}

Result<Reader> Reader::open(QByteArray bytes) {
  Reader reader;
  reader.m_bytes = std::move(bytes);
  if (const auto table = reader.readTable(); !table)
    return table.error();
  if (const auto checked = reader.checkReferences(); !checked)
    return checked.error();
  return reader;
}

Result<void> Reader::readTable() {
  const qsizetype size = m_bytes.size();
  if (size < kHeader + kTrailer || !m_bytes.startsWith("bplist0"))
    return damaged(QStringLiteral("no header"));
  const quint64 trailer = quint64(size - kTrailer);
  const int offsetSize = int(number(trailer + 6, 1));
  m_referenceSize = int(number(trailer + 7, 1));
  const quint64 count = number(trailer + 8, 8);
  const quint64 top = number(trailer + 16, 8);
  m_objectsEnd = number(trailer + 24, 8);
  if (offsetSize < 1 || offsetSize > 8 || m_referenceSize < 1 || m_referenceSize > 8)
    return damaged(QStringLiteral("sizes in the trailer"));
  // Every object takes a byte and an entry of the table, so a count beyond the file is a lie.
  if (count < 1 || count > trailer || count > std::numeric_limits<quint32>::max() || top >= count ||
      m_objectsEnd < quint64(kHeader) || m_objectsEnd > trailer ||
      count > (trailer - m_objectsEnd) / quint64(offsetSize))
    return damaged(QStringLiteral("counts in the trailer"));
  m_root = quint32(top);
  m_objects.resize(count);
  for (quint32 i = 0; i < count; ++i) {
    const quint64 offset = number(m_objectsEnd + quint64(i) * quint64(offsetSize), offsetSize);
    if (auto read = readObject(i, offset); !read)
      return read;
  }
  return {};
}

Result<void> Reader::readObject(quint32 index, quint64 offset) {
  if (offset < quint64(kHeader) || offset >= m_objectsEnd)
    return damaged(QStringLiteral("object %1 lies outside").arg(index));
  const auto marker = quint8(number(offset, 1));
  const quint8 low = marker & 0x0F;
  Object& object = m_objects[index];
  object.offset = offset + 1;
  const auto fixed = [&](Kind kind, quint32 size) {
    object.kind = kind;
    object.size = size;
    return object.size <= m_objectsEnd - object.offset;
  };
  bool sound = false;
  switch (marker >> 4) {
  case 0x0:
    object.kind = low == 0 ? Kind::Null : Kind::Boolean;
    object.size = low == 9 ? 1 : 0;
    sound = low == 0 || low == 8 || low == 9;
    break;
  case 0x1:
    sound = low <= 4 && fixed(Kind::Integer, 1U << low);
    break;
  case 0x2:
    sound = (low == 2 || low == 3) && fixed(Kind::Real, 1U << low);
    break;
  case 0x3:
    sound = low == 3 && fixed(Kind::Date, 8);
    break;
  case 0x8:
    sound = low <= 7 && fixed(Kind::Uid, low + 1U);
    break;
  default:
    return readSized(object, marker, offset);
  }
  if (!sound)
    return damaged(QStringLiteral("object %1").arg(index));
  return {};
}

Result<void> Reader::readSized(Object& object, quint8 marker, quint64 at) {
  quint64 unit = 1; // bytes that one of the object's elements takes
  switch (marker >> 4) {
  case 0x4:
    object.kind = Kind::Data;
    break;
  case 0x5:
    object.kind = Kind::String;
    break;
  case 0x6:
    object.kind = Kind::String;
    object.wide = true;
    unit = 2;
    break;
  case 0xA:
  case 0xC: // a set: an array without an order
    object.kind = Kind::Array;
    unit = quint64(m_referenceSize);
    break;
  case 0xD:
    object.kind = Kind::Dictionary;
    unit = 2 * quint64(m_referenceSize);
    break;
  default:
    return damaged(QStringLiteral("unknown marker %1").arg(marker));
  }
  quint64 count = marker & 0x0F;
  if (count == 0x0F) { // the count follows as an integer object
    const quint64 left = m_objectsEnd - object.offset;
    const quint8 sizeMarker = left > 0 ? quint8(number(object.offset, 1)) : 0;
    const quint64 size = 1ULL << (sizeMarker & 0x0F);
    if (sizeMarker >> 4 != 1 || size > 8 || size + 1 > left)
      return damaged(QStringLiteral("a count at %1").arg(at));
    count = number(object.offset + 1, int(size));
    object.offset += 1 + size;
  }
  if (count > (m_objectsEnd - object.offset) / unit || count > std::numeric_limits<quint32>::max())
    return damaged(QStringLiteral("an object at %1 is longer than the file").arg(at));
  object.size = quint32(count);
  return {};
}

// Walks all containers from the root with a stack of its own, children first: refuses references
// outside the table, cycles, nesting beyond the limit, and sharing that unfolds beyond it.
Result<void> Reader::checkReferences() const {
  struct Sum {
    quint32 depth = 0;     // 0: not visited yet
    quint64 expansion = 0; // values when unfolded
  };
  struct Frame {
    quint32 index;
    quint64 next; // offset of the next reference
    quint64 end;
    Sum sum;
  };
  constexpr quint32 kOpen = std::numeric_limits<quint32>::max();
  std::vector<Sum> sums(m_objects.size());
  std::vector<Frame> stack;
  const auto enter = [&](quint32 index) {
    const Object& object = m_objects[index];
    const quint64 references = (object.kind == Kind::Dictionary ? 2U : 1U) * quint64(object.size);
    const quint64 end = object.offset + references * quint64(m_referenceSize);
    stack.push_back({index, object.offset, end, {1, 1}});
    sums[index].depth = kOpen;
  };
  if (holdsOthers(m_root))
    enter(m_root);
  while (!stack.empty()) {
    Frame& frame = stack.back();
    if (frame.next == frame.end) {
      const Sum done = frame.sum;
      if (done.depth > kMostDepth || done.expansion > kMostExpansion)
        return damaged(QStringLiteral("nested or shared beyond reason"));
      sums[frame.index] = done;
      stack.pop_back();
      if (!stack.empty()) {
        Sum& parent = stack.back().sum;
        parent.depth = std::max(parent.depth, done.depth + 1);
        parent.expansion += done.expansion;
      }
      continue;
    }
    const quint64 child = bigEndian(m_bytes.constData() + frame.next, m_referenceSize);
    frame.next += quint64(m_referenceSize);
    if (child >= m_objects.size())
      return damaged(QStringLiteral("a reference outside the table"));
    const Sum& seen = sums[child];
    if (seen.depth == kOpen)
      return damaged(QStringLiteral("a container that holds itself"));
    if (seen.depth > 0 || !holdsOthers(quint32(child))) {
      frame.sum.depth = std::max(frame.sum.depth, seen.depth + 1);
      frame.sum.expansion += std::max<quint64>(1, seen.expansion);
      if (frame.sum.expansion > kMostExpansion)
        return damaged(QStringLiteral("shared beyond reason"));
    } else {
      enter(quint32(child));
    }
  }
  return {};
}

Ref Reader::reference(Ref container, qsizetype at) const {
  const Object& object = m_objects[container.index];
  return {quint32(number(object.offset + quint64(at) * quint64(m_referenceSize), m_referenceSize))};
}

qint64 Reader::integer(Ref ref) const {
  const Object& object = m_objects[ref.index];
  if (object.size < 16)
    return qint64(number(object.offset, int(object.size)));
  // Sixteen bytes hold what eight cannot.
  const bool negative = number(object.offset, 8) >> 63 != 0;
  const quint64 low = number(object.offset + 8, 8);
  if (number(object.offset, 8) == 0 && low <= quint64(std::numeric_limits<qint64>::max()))
    return qint64(low);
  return negative ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

double Reader::real(Ref ref) const {
  const Object& object = m_objects[ref.index];
  if (object.size == 4)
    return double(std::bit_cast<float>(quint32(number(object.offset, 4))));
  return std::bit_cast<double>(number(object.offset, 8));
}

QByteArray Reader::data(Ref ref) const {
  const Object& object = m_objects[ref.index];
  return QByteArray(m_bytes.constData() + object.offset, qsizetype(object.size));
}

QString Reader::string(Ref ref) const {
  const Object& object = m_objects[ref.index];
  const char* bytes = m_bytes.constData() + object.offset;
  if (!object.wide)
    return QString::fromLatin1(bytes, qsizetype(object.size));
  QString text(qsizetype(object.size), Qt::Uninitialized);
  qFromBigEndian<char16_t>(bytes, qsizetype(object.size), text.data());
  return text;
}

quint64 Reader::uid(Ref ref) const {
  return number(m_objects[ref.index].offset, int(m_objects[ref.index].size));
}

bool Reader::isString(Ref ref, QStringView wanted) const {
  const Object& object = m_objects[ref.index];
  if (object.kind != Kind::String || qsizetype(object.size) != wanted.size())
    return false;
  if (object.wide)
    return string(ref) == wanted;
  return QLatin1StringView(m_bytes.constData() + object.offset, wanted.size()) == wanted;
}

std::optional<Ref> Reader::find(Ref dictionary, QStringView wanted) const {
  for (qsizetype i = 0; i < count(dictionary); ++i) {
    if (isString(key(dictionary, i), wanted))
      return valueAt(dictionary, i);
  }
  return std::nullopt;
}

Value Reader::scalar(Ref ref) const {
  switch (kind(ref)) {
  case Kind::Boolean:
    return boolean(ref);
  case Kind::Integer:
    return integer(ref);
  case Kind::Real:
    return real(ref);
  case Kind::Date:
    return date(ref);
  case Kind::Data:
    return data(ref);
  case Kind::String:
    return string(ref);
  case Kind::Uid:
    return Value::Uid{uid(ref)};
  case Kind::Null:
  case Kind::Array:
  case Kind::Dictionary:
    break;
  }
  return {};
}

Value Reader::value(Ref ref) const {
  struct Frame {
    Ref ref;
    qsizetype next = 0;
    Value::Array array;
    Value::Dictionary dictionary;
  };
  const auto isContainer = [this](Ref each) {
    return kind(each) == Kind::Array || kind(each) == Kind::Dictionary;
  };
  if (!isContainer(ref))
    return scalar(ref);
  std::vector<Frame> stack;
  stack.push_back({ref, 0, {}, {}});
  Value finished;
  const auto put = [this](Frame& frame, Value value) {
    if (kind(frame.ref) == Kind::Array) {
      frame.array.push_back(std::move(value));
    } else {
      const Ref name = key(frame.ref, frame.next);
      if (kind(name) == Kind::String)
        frame.dictionary.emplace_back(string(name), std::move(value));
    }
    ++frame.next;
  };
  for (;;) {
    Frame& frame = stack.back();
    if (frame.next == count(frame.ref)) {
      finished = kind(frame.ref) == Kind::Array ? Value(std::move(frame.array))
                                                : Value(std::move(frame.dictionary));
      stack.pop_back();
      if (stack.empty())
        return finished;
      put(stack.back(), std::move(finished));
      continue;
    }
    const Ref child = kind(frame.ref) == Kind::Array ? element(frame.ref, frame.next)
                                                     : valueAt(frame.ref, frame.next);
    if (isContainer(child))
      stack.push_back({child, 0, {}, {}});
    else
      put(frame, scalar(child));
  }
}

} // namespace tockwise::plist
