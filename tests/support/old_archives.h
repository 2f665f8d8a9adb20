// Makes older, non-keyed archives for tests. Nothing in them is shared: every type and class is
// written out where it is used.
#pragma once

#include <QByteArray>
#include <QtEndian>

#include <vector>

namespace tockwise::old_archive {

/// In its shortest form.
inline QByteArray integer(qint32 value) {
  if (value >= -110 && value <= 127)
    return QByteArray(1, char(value));
  const bool isShort = value >= -32768 && value <= 32767;
  const quint32 bytes = qToLittleEndian(quint32(value));
  return QByteArray(1, isShort ? '\x81' : '\x82') +
         QByteArray(reinterpret_cast<const char*>(&bytes), isShort ? 2 : 4);
}

/// Text with its length before it.
inline QByteArray counted(const QByteArray& bytes) {
  return integer(qint32(bytes.size())) + bytes;
}

/// A group of those types; values as they are written.
inline QByteArray group(const QByteArray& types, const QByteArray& values) {
  return '\x84' + counted(types) + values;
}

/// A new object of a class with those superclasses.
inline QByteArray object(const std::vector<QByteArray>& chain, const QByteArray& groups) {
  QByteArray bytes("\x84");
  for (const QByteArray& name : chain)
    bytes += "\x84\x84" + counted(name) + integer(0);
  return bytes + '\x85' + groups + '\x86';
}

inline QByteArray nil() {
  return QByteArray("\x85");
}

inline QByteArray string(const QByteArray& utf8) {
  return object({"NSString", "NSObject"}, group("+", counted(utf8)));
}

/// types: of the number, such as "i".
inline QByteArray number(const QByteArray& types, const QByteArray& value) {
  return object({"NSNumber", "NSValue", "NSObject"},
                group("*", "\x84\x84" + counted(types)) + group(types, value));
}

inline QByteArray dictionary(const std::vector<std::pair<QByteArray, QByteArray>>& pairs) {
  QByteArray groups = group("i", integer(qint32(pairs.size())));
  for (const auto& [key, value] : pairs)
    groups += group("@", string(key)) + group("@", value);
  return object({"NSDictionary", "NSObject"}, groups);
}

inline QByteArray data(const QByteArray& bytes) {
  return object({"NSData", "NSObject"},
                group("i", integer(qint32(bytes.size()))) +
                    group('[' + QByteArray::number(bytes.size()) + "c]", bytes));
}

inline QByteArray attachment(const QByteArray& container) {
  const QByteArray wrapper = object({"NSFileWrapper", "NSObject"}, group("@", data(container)));
  return object({"NSTextAttachment", "NSObject"}, group("@", wrapper));
}

/// A run of that length with attributes of its own, number counting from 1.
inline QByteArray run(int number, int length, const QByteArray& attributes) {
  return group("iI", integer(number) + integer(length)) + group("@", attributes);
}

inline const std::vector<QByteArray> kTextStorage{"NSTextStorage", "NSMutableAttributedString",
                                                  "NSAttributedString", "NSObject"};

inline QByteArray attributed(const std::vector<QByteArray>& chain, const QByteArray& utf8,
                             const QByteArray& runs) {
  return object(chain, group("@", string(utf8)) + runs);
}

/// The whole archive of one object.
inline QByteArray archive(const QByteArray& object) {
  return QByteArray("\x04\x0bstreamtyped\x81\xe8\x03", 16) + group("@", object);
}

} // namespace tockwise::old_archive
