#include "store/archive/typedstream_reader.h"

#include <limits>

namespace tockwise::typedstream {
namespace {

constexpr int kStreamer = 4;
constexpr int kMostChain = 64;

using Kind = Item::Kind;

// value as the type has it: an unsigned number may be stored as a negative one.
Item integerItem(char code, qint64 value) {
  const auto item = [code](Kind kind, qint64 number) {
    return Item{kind, code, 0, quint64(number)};
  };
  switch (code) {
  case 's':
    return item(Kind::Integer, qint16(value));
  case 'S':
    return item(Kind::Integer, quint16(value));
  case 'i':
  case 'l':
    return item(Kind::Integer, qint32(value));
  case 'I':
  case 'L':
    return item(Kind::Integer, quint32(value));
  case 'Q':
    return item(Kind::Unsigned, value);
  default:
    return item(Kind::Integer, value);
  }
}

bool isByte(const Type& type) {
  return type.code == 'c' || type.code == 'C' || type.code == 'B';
}

} // namespace

TreeReader::TreeReader(const QByteArray& archive) : Input(archive) {
  m_tree.m_archive = archive;
}

bool TreeReader::readSharedString(std::optional<quint64>& index) {
  int head = 0;
  return readHead(head) && readSharedStringOf(head, index);
}

bool TreeReader::readSharedStringOf(int head, std::optional<quint64>& index) {
  index.reset();
  if (head == kNil)
    return true;
  if (head != kNew)
    return readTableReference(head, m_strings.size(), index.emplace());
  Item item;
  if (!charge(sizeof(Shared)) || !readUnsharedString(item))
    return false;
  if (item.kind != Kind::Bytes)
    return fail(QStringLiteral("a shared string that is none"));
  index = m_strings.size();
  m_strings.push_back({item.payload, m_tree.bytes(item), {}});
  return true;
}

bool TreeReader::readCString(Item& item) {
  int head = 0;
  if (!readHead(head))
    return false;
  item = {Kind::Nil, '*', 0, 0};
  if (head == kNil)
    return true;
  if (head != kNew) {
    quint64 index = 0;
    if (!readTableReference(head, m_numbered.size(), index))
      return false;
    const Numbered& known = m_numbered[index];
    if (known.kind != Kind::Bytes)
      return fail(QStringLiteral("a reference to no string"));
    item = {Kind::Bytes, '*', known.size, known.index};
    return true;
  }
  const size_t number = m_numbered.size();
  m_numbered.push_back({});
  std::optional<quint64> index;
  if (!charge(sizeof(Numbered)) || !readSharedString(index))
    return false;
  if (!index)
    return true;
  item = m_strings[*index].item('*');
  m_numbered[number] = {Kind::Bytes, item.payload, item.size};
  return true;
}

bool TreeReader::readClass(Item& item) {
  int index = -1;
  if (!readNewClasses(index))
    return false;
  item = index < 0 ? Item{Kind::Nil, '#', 0, 0} : Item{Kind::Class, '#', 0, quint64(index)};
  return true;
}

// A chain of classes, from the class up: new ones, up to nil or a class that is known already.
bool TreeReader::readNewClasses(int& first) {
  const size_t firstNew = m_tree.m_classes.size();
  int above = -1; // where the new ones end
  while (true) {
    int head = 0;
    if (!readHead(head))
      return false;
    if (head == kNil)
      break;
    if (head != kNew) {
      quint64 index = 0;
      if (!readTableReference(head, m_numbered.size(), index))
        return false;
      const Numbered& known = m_numbered[index];
      if (known.kind != Kind::Class || known.index >= firstNew)
        return fail(QStringLiteral("a reference to no class"));
      above = int(known.index);
      break;
    }
    if (!charge(sizeof(Class) + sizeof(Numbered)) ||
        m_tree.m_classes.size() - firstNew >= size_t(kMostChain))
      return fail(QStringLiteral("a chain of too many classes"));
    m_numbered.push_back({Kind::Class, m_tree.m_classes.size(), 0});
    std::optional<quint64> name;
    Class made;
    if (!readSharedString(name) || !readInteger(made.version))
      return false;
    if (!name)
      return fail(QStringLiteral("a class without a name"));
    made.name = m_strings[*name].text;
    m_tree.m_classes.push_back(made);
  }
  for (size_t i = m_tree.m_classes.size(); i-- > firstNew; above = int(i)) {
    Class& of = m_tree.m_classes[i];
    of.superclass = above;
    of.chainLength = above < 0 ? 1 : m_tree.m_classes[size_t(above)].chainLength + 1;
    if (of.chainLength > kMostChain)
      return fail(QStringLiteral("a chain of too many classes"));
  }
  first = above;
  return true;
}

bool TreeReader::readObject(Item& item, int depth) {
  int head = 0;
  if (!readHead(head))
    return false;
  item = {Kind::Nil, '@', 0, 0};
  if (head == kNil)
    return true;
  if (head == kNew)
    return readNewObject(item, depth);
  quint64 index = 0;
  if (!readTableReference(head, m_numbered.size(), index))
    return false;
  if (m_numbered[index].kind != Kind::Object)
    return fail(QStringLiteral("a reference to no object"));
  item = {Kind::Object, '@', 0, m_numbered[index].index};
  return true;
}

bool TreeReader::readNewObject(Item& item, int depth) {
  if (depth >= Tree::kMostDepth)
    return fail(QStringLiteral("objects nested too deep"));
  if (!charge(sizeof(Object) + sizeof(Numbered)))
    return false;
  const size_t index = m_tree.m_objects.size();
  m_tree.m_objects.push_back({quint32(m_numbered.size()), 0, {}});
  m_numbered.push_back({Kind::Object, index, 0});
  Item of;
  if (!readClass(of))
    return false;
  if (of.kind != Kind::Class)
    return fail(QStringLiteral("an object without a class"));
  m_tree.m_objects[index].classIndex = int(of.payload);
  std::vector<Group> groups;
  while (left() > 0 && !isAtEnd()) {
    if (!readGroup(groups.emplace_back(), depth + 1))
      return false;
  }
  if (left() == 0)
    return fail(QStringLiteral("the archive ends in an object"));
  skip(1);
  m_tree.m_objects[index].groups = std::move(groups);
  item = {Kind::Object, '@', 0, index};
  return true;
}

bool TreeReader::readTypes(std::optional<quint64>& index) {
  if (!readSharedString(index))
    return false;
  if (!index)
    return fail(QStringLiteral("a group without types"));
  Shared& shared = m_strings[*index];
  if (shared.types)
    return true;
  // A type takes at least one character.
  if (!charge(sizeof(Type) * quint64(shared.text.size())))
    return false;
  shared.types = parseTypes(shared.text);
  return shared.types ? true : fail(QStringLiteral("types that cannot be read"));
}

bool TreeReader::readGroup(Group& group, int depth) {
  std::optional<quint64> index;
  if (!charge(sizeof(Group)) || !readTypes(index))
    return false;
  group.types = m_strings[*index].text;
  // The string table may move while the values are read, the types themselves do not.
  const Type* types = m_strings[*index].types->data();
  const size_t count = m_strings[*index].types->size();
  if (!charge(count * sizeof(Item)))
    return false;
  group.items.resize(count);
  for (size_t i = 0; i < count; ++i) {
    if (!readValue(types[i], group.items[i], depth))
      return false;
  }
  return true;
}

bool TreeReader::readArray(const Type& type, Item& item, int depth) {
  if (type.count > left())
    return fail(QStringLiteral("an array beyond the data"));
  if (isByte(type.parts[0])) {
    item = {Kind::Bytes, '[', quint32(type.count), at()};
    skip(type.count);
    return true;
  }
  if (!charge(sizeof(std::vector<Item>) + type.count * sizeof(Item)))
    return false;
  std::vector<Item> items(type.count);
  for (Item& element : items) {
    if (!readValue(type.parts[0], element, depth))
      return false;
  }
  item = {Kind::List, '[', 0, m_tree.m_lists.size()};
  m_tree.m_lists.push_back(std::move(items));
  return true;
}

bool TreeReader::readStructure(const Type& type, Item& item, int depth) {
  if (!charge(sizeof(std::vector<Item>) + type.parts.size() * sizeof(Item)))
    return false;
  std::vector<Item> items(type.parts.size());
  for (size_t i = 0; i < items.size(); ++i) {
    if (!readValue(type.parts[i], items[i], depth))
      return false;
  }
  item = {Kind::List, '{', 0, m_tree.m_lists.size()};
  m_tree.m_lists.push_back(std::move(items));
  return true;
}

bool TreeReader::readValue(const Type& type, Item& item, int depth) {
  switch (type.code) {
  case 'c':
  case 'C':
  case 'B': {
    int byte = 0;
    if (!readHead(byte))
      return false;
    item = {Kind::Integer, type.code, 0, quint64(type.code == 'c' ? byte : byte & 0xFF)};
    return true;
  }
  case 'f':
  case 'd':
    return readReal(type.code, item);
  case '*':
    return readCString(item);
  case ':':
  case '%': {
    std::optional<quint64> index;
    if (!readSharedString(index))
      return false;
    item = index ? m_strings[*index].item(type.code) : Item{Kind::Nil, type.code, 0, 0};
    return true;
  }
  case '+':
    return readUnsharedString(item);
  case '#':
    return readClass(item);
  case '@':
    return readObject(item, depth);
  case '!':
    item = {};
    return true;
  case '[':
    return readArray(type, item, depth);
  case '{':
    return readStructure(type, item, depth);
  default: {
    qint64 value = 0;
    if (!readInteger(value))
      return false;
    item = integerItem(type.code, value);
    return true;
  }
  }
}

bool TreeReader::readHeader() {
  int version = 0;
  Item signature;
  if (!readHead(version) || version != kStreamer || !readUnsharedString(signature))
    return fail(QStringLiteral("no header"));
  const QByteArray name = signature.kind == Kind::Bytes ? m_tree.bytes(signature) : QByteArray();
  if (name != "streamtyped" && name != "typedstream")
    return fail(QStringLiteral("no header"));
  m_tree.m_order = name == "typedstream" ? ByteOrder::Big : ByteOrder::Little;
  setByteOrder(m_tree.m_order);
  return readInteger(m_tree.m_system);
}

Result<Tree> TreeReader::read() {
  if (m_tree.m_archive.size() > std::numeric_limits<qint32>::max())
    return Error{Error::Kind::Damaged, QStringLiteral("an old archive of more than 2 GiB")};
  bool read = readHeader();
  while (read && left() > 0)
    read = readGroup(m_tree.m_groups.emplace_back(), 0);
  if (!read)
    return Error{Error::Kind::Damaged, failure()};
  return std::move(m_tree);
}

Result<Tree> Tree::read(const QByteArray& archive) {
  return TreeReader(archive).read();
}

} // namespace tockwise::typedstream
