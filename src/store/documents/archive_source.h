// The elements of a data dictionary in a keyed archive, as store/element_layout.h reads them.
#pragma once

#include "store/archive/keyed_archive.h"

#include <optional>

namespace tockwise {

/// Any one thread. What is taken counts against what an archive of its size may hold: a small one
/// can name a large object again and again.
class ArchiveSource {
 public:
  using Handle = KeyedArchive::Uid;

  /// archive must outlive this.
  explicit ArchiveSource(const KeyedArchive& archive);

  /// The objects of an array, or nothing.
  std::optional<std::vector<Handle>> elementsOf(Handle array);
  /// The value under a key of a dictionary of any number of pairs: the first one, or nothing.
  std::optional<Handle> find(Handle dictionary, QStringView key) const;
  /// Counts bytes; false once there were too many.
  bool charge(qsizetype bytes);
  bool isExhausted() const { return m_bytesLeft < 0; }

  std::optional<qint64> integer(Handle from) const;
  std::optional<Date> date(Handle from) const;
  std::optional<QString> string(Handle from);
  std::optional<QByteArray> data(Handle from);
  bool isString(Handle from, QStringView wanted) const;
  std::optional<qsizetype> arrayCount(Handle from) const;
  std::optional<qsizetype> pairCount(Handle from) const;
  Handle element(Handle array, qsizetype at) const;

 private:
  bool isSmall(Handle from) const;
  std::optional<plist::Ref> list(Handle from, QStringView className, QStringView field) const;
  Handle named(plist::Ref list, qsizetype at) const;

  const KeyedArchive& m_archive;
  qsizetype m_bytesLeft;
};

} // namespace tockwise
