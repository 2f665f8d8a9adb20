#include "store/archive/typedstream_input.h"

#include <bit>

namespace tockwise::typedstream {
namespace {

using Kind = Item::Kind;

constexpr quint64 kLeastBudget = quint64(64) << 20;

qint64 signExtended(quint64 value, int size) {
  const int unused = 64 - 8 * size;
  return qint64(value << unused) >> unused;
}

} // namespace

Input::Input(const QByteArray& archive)
    : m_archive(archive), m_budget(kLeastBudget + 4 * quint64(archive.size())) {}

bool Input::fail(const QString& why) {
  if (m_failure.isEmpty())
    m_failure = QStringLiteral("not a sound old archive: %1 at byte %2").arg(why).arg(m_at);
  return false;
}

bool Input::charge(quint64 bytes) {
  if (bytes > m_budget)
    return fail(QStringLiteral("more values than an archive of this size has"));
  m_budget -= bytes;
  return true;
}

// Precondition: size bytes are left.
quint64 Input::takeNumber(int size) {
  quint64 value = 0;
  for (int i = 0; i < size; ++i) {
    const auto byte = quint8(m_archive[m_at + i]);
    value |= quint64(byte) << 8 * (m_order == ByteOrder::Big ? size - 1 - i : i);
  }
  m_at += size;
  return value;
}

bool Input::readHead(int& head) {
  if (left() < 1)
    return fail(QStringLiteral("the archive ends"));
  head = quint8(m_archive[m_at++]);
  if (head >= 0x80)
    head -= 0x100;
  return true;
}

bool Input::readIntegerOf(int head, qint64& value) {
  int size = 0;
  if (head >= kFirstReference)
    value = head;
  else if (head == kTwoBytes)
    size = 2;
  else if (head == kFourBytes)
    size = 4;
  else if (head == kEightBytes)
    size = 8;
  else
    return fail(QStringLiteral("no number"));
  if (quint64(size) > left())
    return fail(QStringLiteral("the archive ends in a number"));
  if (size > 0)
    value = signExtended(takeNumber(size), size);
  return true;
}

bool Input::readInteger(qint64& value) {
  int head = 0;
  return readHead(head) && readIntegerOf(head, value);
}

bool Input::readReal(char code, Item& item) {
  int head = 0;
  if (!readHead(head))
    return false;
  double value = 0;
  if (head == kFloating) {
    const int size = code == 'f' ? 4 : 8;
    if (quint64(size) > left())
      return fail(QStringLiteral("the archive ends in a number"));
    const quint64 bits = takeNumber(size);
    value = size == 4 ? double(std::bit_cast<float>(quint32(bits))) : std::bit_cast<double>(bits);
  } else {
    qint64 whole = 0;
    if (!readIntegerOf(head, whole))
      return false;
    value = double(whole);
  }
  item = {Kind::Real, code, 0, std::bit_cast<quint64>(value)};
  return true;
}

bool Input::readUnsharedString(Item& item) {
  int head = 0;
  qint64 length = 0;
  if (!readHead(head))
    return false;
  item = {Kind::Nil, '+', 0, 0};
  if (head == kNil)
    return true;
  if (!readIntegerOf(head, length))
    return false;
  if (length < 0 || quint64(length) > left())
    return fail(QStringLiteral("a string beyond the data"));
  item = {Kind::Bytes, '+', quint32(length), quint64(m_at)};
  m_at += length;
  return true;
}

bool Input::readTableReference(int head, size_t tableSize, quint64& index) {
  qint64 number = 0;
  if (!readIntegerOf(head, number))
    return false;
  if (number < kFirstReference || quint64(number) - quint64(kFirstReference) >= tableSize)
    return fail(QStringLiteral("a reference to nothing"));
  index = quint64(number) - quint64(kFirstReference);
  return true;
}

} // namespace tockwise::typedstream
