// Reader of binary property lists ("bplist00"): a flat table of objects over the file's bytes.
//
// The whole table is checked when the list is opened (trailer, offsets, extents, references,
// cycles, depth and expansion), so that reading an element afterwards cannot fail. Nothing here
// recurses. The layout is described in docs/store-format.md.
#pragma once

#include "base/result.h"
#include "store/value.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace tockwise::plist {

enum class Kind : quint8 {
  Null,
  Boolean,
  Integer,
  Real,
  Date,
  Data,
  String,
  Uid,
  Array, // from here on containers
  Dictionary
};

/// One object of the list. Valid as long as its reader.
struct Ref {
  quint32 index = 0;
  friend bool operator==(Ref, Ref) = default;
};

/// Any one thread.
class Reader {
 public:
  /// Containers may be nested this deep, and shared ones may unfold to this many values.
  static constexpr quint32 kMostDepth = 512;
  static constexpr quint64 kMostExpansion = 4'000'000;

  /// Damaged when bytes are no sound binary property list.
  static Result<Reader> open(QByteArray bytes);

  Ref root() const { return {m_root}; }
  Kind kind(Ref ref) const { return m_objects[ref.index].kind; }

  // Each of these is for objects of its kind only.
  bool boolean(Ref ref) const { return m_objects[ref.index].size != 0; }
  /// Values above 2^63 - 1 read as the largest.
  qint64 integer(Ref ref) const;
  double real(Ref ref) const;
  Date date(Ref ref) const { return {real(ref)}; }
  /// A copy of the bytes.
  QByteArray data(Ref ref) const;
  QString string(Ref ref) const;
  /// Whether the object, of any kind, is that string.
  bool isString(Ref ref, QStringView wanted) const;
  quint64 uid(Ref ref) const;
  /// Elements of an array, pairs of a dictionary.
  qsizetype count(Ref ref) const { return qsizetype(m_objects[ref.index].size); }
  Ref element(Ref array, qsizetype at) const { return reference(array, at); }
  Ref key(Ref dictionary, qsizetype at) const { return reference(dictionary, at); }
  Ref valueAt(Ref dictionary, qsizetype at) const {
    return reference(dictionary, count(dictionary) + at);
  }
  /// The value under key, if the dictionary has one.
  std::optional<Ref> find(Ref dictionary, QStringView key) const;
  /// The object with all that it holds.
  Value value(Ref ref) const;

 private:
  struct Object {
    Kind kind = Kind::Null;
    bool wide = false;  // a string of UTF-16 units
    quint32 size = 0;   // bytes, UTF-16 units, elements or pairs; a boolean's value
    quint64 offset = 0; // of the payload
  };

  Reader() = default;
  Result<void> readTable();
  Result<void> readObject(quint32 index, quint64 offset);
  Result<void> readSized(Object& object, quint8 marker, quint64 at);
  Result<void> checkReferences() const;
  bool holdsOthers(quint32 index) const;
  quint64 number(quint64 offset, int size) const;
  Ref reference(Ref container, qsizetype at) const;
  Value scalar(Ref ref) const;

  QByteArray m_bytes;
  std::vector<Object> m_objects;
  quint64 m_objectsEnd = 0; // where the offset table starts
  quint32 m_root = 0;
  int m_referenceSize = 0;
};

} // namespace tockwise::plist
