#include "store/archive/typedstream_tree.h"

#include <bit>

namespace tockwise::typedstream {

double Item::real() const {
  return std::bit_cast<double>(payload);
}

Item Tree::root() const {
  if (m_groups.size() != 1 || m_groups[0].items.size() != 1)
    return {};
  return m_groups[0].items[0];
}

QByteArray Tree::bytes(const Item& item) const {
  return m_archive.mid(qsizetype(item.payload), item.size);
}

const Class& Tree::classOf(const Item& object) const {
  return m_classes[size_t(m_objects[object.payload].classIndex)];
}

const Class* Tree::superclassOf(const Class& of) const {
  return of.superclass < 0 ? nullptr : &m_classes[size_t(of.superclass)];
}

bool Tree::isKindOf(const Item& item, QByteArrayView className) const {
  if (item.kind != Item::Kind::Object)
    return false;
  for (const Class* of = &classOf(item); of; of = superclassOf(*of)) {
    if (of->name == className)
      return true;
  }
  return false;
}

} // namespace tockwise::typedstream
