// The bytes of an older archive, taken off one after the other: heads, numbers, plain strings.
#pragma once

#include "store/archive/typedstream_tree.h"

#include <QString>

namespace tockwise::typedstream {

// Heads: what most things start with. Other numbers stand for themselves.
inline constexpr int kTwoBytes = -127;
inline constexpr int kFourBytes = -126;
inline constexpr int kFloating = -125;
inline constexpr int kNew = -124;
inline constexpr int kNil = -123;
inline constexpr int kEnd = -122;
inline constexpr int kEightBytes = -121;
inline constexpr qint64 kFirstReference = -110; // and the least number that stands for itself

/// Any one thread. Everything that reads moves on behind what it read, or fails; the first failure
/// is remembered.
class Input {
 public:
  /// archive must outlive this.
  explicit Input(const QByteArray& archive);

  void setByteOrder(ByteOrder order) { m_order = order; }
  quint64 left() const { return quint64(m_archive.size() - m_at); }
  quint64 at() const { return quint64(m_at); }
  /// Precondition: so many bytes are left.
  void skip(quint64 bytes) { m_at += qsizetype(bytes); }
  /// Whether the next byte is the end of an object.
  bool isAtEnd() const { return left() > 0 && m_archive[m_at] == char(kEnd); }

  /// A signed byte.
  bool readHead(int& head);
  bool readInteger(qint64& value);
  /// An integer whose head was read already.
  bool readIntegerOf(int head, qint64& value);
  /// code: 'f' or 'd'.
  bool readReal(char code, Item& item);
  bool readUnsharedString(Item& item);
  /// A number of an entry of a table, whose head was read already.
  bool readTableReference(int head, size_t tableSize, quint64& index);

  /// Counts what is made of the archive against what one of its size may take.
  bool charge(quint64 bytes);
  /// false, always.
  bool fail(const QString& why);
  const QString& failure() const { return m_failure; }

 private:
  quint64 takeNumber(int size);

  const QByteArray& m_archive;
  qsizetype m_at = 0;
  ByteOrder m_order = ByteOrder::Little;
  quint64 m_budget;
  QString m_failure;
};

} // namespace tockwise::typedstream
