// An older, non-keyed archive as a tree of what it holds, read without knowing its classes: every
// group of values in it states its types. Class names are data here; nothing is ever made by name.
#pragma once

#include "base/result.h"

#include <QByteArray>

#include <vector>

namespace tockwise::typedstream {

/// One value. A plain value; what it names lies in its tree.
struct Item {
  enum class Kind : quint8 {
    Nil,
    Integer,  // signed
    Unsigned, // of 64 bits
    Real,
    Bytes,  // strings of every kind, and arrays of single bytes
    List,   // other arrays, and structures
    Object, // perhaps one that holds this item: trees may have cycles
    Class
  };
  Kind kind = Kind::Nil;
  char code = '!';     // its type code; '[' and '{' for arrays and structures
  quint32 size = 0;    // of Bytes
  quint64 payload = 0; // the number, the bits of a real, an offset or an index

  qint64 integer() const { return qint64(payload); }
  double real() const;
};

struct Class {
  QByteArray name;
  qint64 version = 0;
  int superclass = -1; // index of it; below 0: none
  int chainLength = 1; // this class and all above it
};

struct Group {
  QByteArray types;
  std::vector<Item> items; // one a type
};

struct Object {
  quint32 number = 0; // in the order of the archive, in which classes have numbers too
  int classIndex = 0;
  std::vector<Group> groups; // of all its classes, the topmost first
};

enum class ByteOrder { Little, Big };

/// Any one thread.
class Tree {
 public:
  /// Objects may be nested this deep.
  static constexpr int kMostDepth = 256;

  /// Damaged when archive is no sound archive of this kind to its last byte.
  static Result<Tree> read(const QByteArray& archive);

  ByteOrder byteOrder() const { return m_order; }
  qint64 systemVersion() const { return m_system; }
  /// The outermost groups; an archived object is one group of one item.
  const std::vector<Group>& groups() const { return m_groups; }
  /// The archived object, or nil when it is none.
  Item root() const;

  // Each of these is for items of its kind only.
  QByteArray bytes(const Item& item) const;
  const std::vector<Item>& list(const Item& item) const { return m_lists[item.payload]; }
  const Object& object(const Item& item) const { return m_objects[item.payload]; }
  const Class& classOf(const Item& object) const;
  const Class* superclassOf(const Class& of) const;

  /// Whether item is an object of that class or of one below it.
  bool isKindOf(const Item& item, QByteArrayView className) const;

 private:
  friend class TreeReader;
  Tree() = default;

  QByteArray m_archive;
  ByteOrder m_order = ByteOrder::Little;
  qint64 m_system = 0;
  std::vector<Group> m_groups;
  std::vector<Object> m_objects;
  std::vector<Class> m_classes;
  std::vector<std::vector<Item>> m_lists;
};

} // namespace tockwise::typedstream
