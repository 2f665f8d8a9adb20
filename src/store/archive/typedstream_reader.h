// Reads an older archive into a tree; Tree::read is the way to use it.
#pragma once

#include "store/archive/typedstream_input.h"
#include "store/archive/typedstream_tree.h"
#include "store/archive/typedstream_types.h"

#include <optional>

namespace tockwise::typedstream {

/// For one archive, once.
class TreeReader : private Input {
 public:
  explicit TreeReader(const QByteArray& archive);
  Result<Tree> read();

 private:
  struct Shared { // an entry of the string table
    quint64 offset = 0;
    QByteArray text;
    std::optional<std::vector<Type>> types; // of a type string, once it was used as one

    Item item(char code) const { return {Item::Kind::Bytes, code, quint32(text.size()), offset}; }
  };
  struct Numbered { // an entry of the object table
    Item::Kind kind = Item::Kind::Nil;
    quint64 index = 0;
    quint32 size = 0;
  };

  // Each of these takes something off the front of the rest, or fails.
  bool readHeader();
  /// index: into the string table; nothing for nil.
  bool readSharedString(std::optional<quint64>& index);
  bool readSharedStringOf(int head, std::optional<quint64>& index);
  bool readCString(Item& item);
  bool readClass(Item& item);
  bool readNewClasses(int& first);
  bool readObject(Item& item, int depth);
  bool readNewObject(Item& item, int depth);
  bool readGroup(Group& group, int depth);
  bool readTypes(std::optional<quint64>& index);
  bool readValue(const Type& type, Item& item, int depth);
  bool readArray(const Type& type, Item& item, int depth);
  bool readStructure(const Type& type, Item& item, int depth);

  Tree m_tree;
  std::vector<Shared> m_strings;
  std::vector<Numbered> m_numbered;
};

} // namespace tockwise::typedstream
