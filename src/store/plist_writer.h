// Writer of binary property lists ("bplist00"): objects are made bottom-up, equal ones once.
#pragma once

#include "store/value.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>

#include <span>
#include <vector>

namespace tockwise::plist {

/// Any one thread.
class Writer {
 public:
  /// An object that was made; to be put into an array or a dictionary of the same writer.
  using Object = quint32;

  Writer();

  Object boolean(bool value);
  Object integer(qint64 value);
  Object real(double value);
  Object date(Date value);
  Object data(QByteArrayView bytes);
  Object string(const QString& text);
  Object uid(quint64 index);
  Object array(std::span<const Object> elements);
  /// Keys are objects made with string().
  Object dictionary(std::span<const Object> keys, std::span<const Object> values);
  /// The value with all that it holds. A null within it is written as an empty string, since
  /// property lists have none. Nested no deeper than what a Reader gives.
  Object value(const Value& value);

  /// The whole file, with root as its top object.
  QByteArray finish(Object root) const;

 private:
  struct Entry {
    quint8 marker = 0;  // of a container; 0: encoded in m_scalars
    quint32 size = 0;   // elements or pairs
    quint64 start = 0;  // in m_references, or in m_scalars
    quint64 length = 0; // bytes in m_scalars
  };

  Object scalar(const QByteArray& encoded);
  Object container(quint8 marker, quint32 size, std::span<const Object> first,
                   std::span<const Object> second);
  static void putNumber(char* to, quint64 value, int size);
  static void appendNumber(QByteArray& to, quint64 value, int size);
  static void appendInteger(QByteArray& to, qint64 value);
  static void appendMarker(QByteArray& to, quint8 marker, quint64 count);

  std::vector<Entry> m_entries;
  QByteArray m_scalars;
  std::vector<Object> m_references;
  QHash<QByteArray, Object> m_known; // scalars other than data and texts, by their encoding
  QHash<QString, Object> m_knownStrings;
  QHash<QByteArray, Object> m_knownContainers; // small ones, by marker and references
};

} // namespace tockwise::plist
