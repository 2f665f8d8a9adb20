// A keyed archive opened for reading: a flat table of objects that name one another by index (UID).
//
// Opening checks the shape of the whole table once. What is wrong with single objects is found out
// as well, and costs only what leads to them: such objects are not sound. Class names are data
// here; nothing is ever made by name. docs/documents.md describes the layout.
#pragma once

#include "base/result.h"
#include "store/archive/archive_object.h"
#include "store/plist_reader.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace tockwise {

/// Any thread at a time; it never changes once open.
class KeyedArchive : public std::enable_shared_from_this<KeyedArchive> {
 public:
  using Uid = quint64;
  static constexpr Uid kNil = 0; // the object that stands for none
  static constexpr qint64 kVersion = 100000;

  struct ClassRecord {
    QString name;
    QStringList chain; // the class itself first, then its superclasses
    QStringList hints; // classes to fall back on
    bool contains(QStringView className) const {
      return chain.contains(className) || hints.contains(className);
    }
  };

  /// bytes: the binary form of a keyed archive, or its XML form. Damaged when it is neither, and
  /// when $top names no object of the table.
  static Result<std::shared_ptr<const KeyedArchive>> open(const QByteArray& bytes);

  /// The object under "root" in $top, or under its only name.
  Uid root() const { return m_root; }
  qint64 version() const { return m_version; }
  /// Objects of the table, the one at index 0 included.
  quint64 count() const { return m_objects.size(); }
  /// Bytes of the archive.
  qsizetype size() const { return m_size; }
  /// Bytes that what is unfolded from the archive may take: objects can share others many times
  /// over.
  qsizetype mostUnfoldedBytes() const { return (64 << 20) + 4 * m_size; }
  const plist::Reader& list() const { return m_list; }
  /// uid with the archive; null for nil and for what is no index.
  ArchiveObject object(Uid uid) const;

  /// Whether uid names an object: in the table and not nil.
  bool names(Uid uid) const { return uid != kNil && uid < m_objects.size(); }
  /// Whether the object and all that it leads to is whole: every reference within the table, every
  /// class a class, every scalar of a known kind. Only sound objects can be copied.
  bool isSound(Uid uid) const {
    return uid < m_objects.size() && (m_unsound.empty() || !m_unsound[uid]);
  }
  /// The object's place in the list. Precondition: names(uid).
  plist::Ref ref(Uid uid) const { return m_objects[uid]; }
  /// Null when uid names no object.
  plist::Kind kind(Uid uid) const {
    return names(uid) ? m_list.kind(m_objects[uid]) : plist::Kind::Null;
  }
  /// Whether the object is a record of a class.
  bool isRecord(Uid uid) const { return names(uid) && m_shapes[uid] == Shape::Record; }
  /// The class of a record, or a class record itself; null when the object is none, or its class is
  /// damaged.
  const ClassRecord* classOf(Uid uid) const;
  /// Whether className is in the record's chain of classes, or among its hints.
  bool isKindOf(Uid uid, QStringView className) const;

  /// What a record has under name, as it stands: a scalar or a Uid.
  std::optional<plist::Ref> field(Uid record, QStringView name) const;
  /// The object that a field names; nil when there is no such field or it names none.
  Uid reference(Uid record, QStringView name) const;

 private:
  enum class Shape : quint8 { Scalar, Record, Class, Damaged };

  explicit KeyedArchive(plist::Reader list) : m_list(std::move(list)) {}
  Result<void> readEnvelope();
  Result<void> readTop(plist::Ref top);
  void readShapes();
  void findUnsound();
  void markUnsound(std::vector<Uid> unsound);
  /// Calls seen for every reference in value; false when it holds what no archive holds, or when
  /// seen says so.
  template <typename Seen> bool visit(plist::Ref value, const Seen& seen) const;

  plist::Reader m_list;
  qsizetype m_size = 0;
  qint64 m_version = 0;
  Uid m_root = kNil;
  std::vector<plist::Ref> m_objects;
  std::vector<ClassRecord> m_classes;
  std::vector<Shape> m_shapes;
  std::vector<quint32> m_classOf; // index into m_classes; of a class record: its own
  std::vector<bool> m_unsound;    // empty as a rule: all are sound
};

} // namespace tockwise
