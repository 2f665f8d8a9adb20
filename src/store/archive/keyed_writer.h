// Writer of keyed archives: objects are appended to a flat table and name one another by index.
//
// Equal scalars become one object, and so do equal records where the caller says that they are
// values. Everything else is told apart by its index. The same calls give the same bytes.
#pragma once

#include "store/archive/archive_object.h"
#include "store/plist_writer.h"

#include <QHash>

#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

namespace tockwise {

/// Any one thread.
class KeyedWriter {
 public:
  /// An index into the objects.
  using Uid = quint64;
  static constexpr Uid kNil = 0;
  /// What a field of a record holds: made by one of the inline... functions.
  using Inline = plist::Writer::Object;
  using Field = std::pair<QString, Inline>;

  KeyedWriter();

  // Objects. Equal scalars of one type are one object; 1, 1.0 and true are three.
  Uid string(const QString& text);
  Uid integer(qint64 value);
  Uid real(double value);
  Uid boolean(bool value);
  Uid date(Date value); // a record
  Uid data(QByteArrayView bytes);
  Uid null(); // the object that stands for null in collections
  Uid mutableString(const QString& text);
  Uid mutableData(QByteArrayView bytes);
  Uid array(std::span<const Uid> elements);
  Uid mutableArray(std::span<const Uid> elements);
  Uid dictionary(std::span<const Uid> keys, std::span<const Uid> values);
  // By their value: the same object for equal elements.
  Uid arrayValue(std::span<const Uid> elements);
  Uid dictionaryValue(std::span<const Uid> keys, std::span<const Uid> values);
  // The same for an object that was reserved.
  void setArray(Uid uid, std::span<const Uid> elements);
  void setDictionary(Uid uid, std::span<const Uid> keys, std::span<const Uid> values);

  // Values of a record's fields.
  Inline inlineReference(Uid uid);
  Inline inlineInteger(qint64 value) { return m_list.integer(value); }
  Inline inlineReal(double value) { return m_list.real(value); }
  Inline inlineData(QByteArrayView bytes) { return m_list.data(bytes); }
  Inline inlineString(const QString& text) { return m_list.string(text); }

  /// The class record with this chain, the class itself first, its superclasses after it.
  Uid classRecord(const QStringList& chain, const QStringList& hints = {});
  /// A new object to be filled in with setRecord, which its own fields may refer to meanwhile.
  Uid reserve();
  void setRecord(Uid uid, std::span<const Field> fields, const QStringList& chain);
  void setRecord(Uid uid, std::initializer_list<Field> fields, const QStringList& chain) {
    setRecord(uid, std::span(fields.begin(), fields.size()), chain);
  }
  /// A record by its value: the same object for equal fields and class.
  Uid valueRecord(std::span<const Field> fields, const QStringList& chain);
  Uid valueRecord(std::initializer_list<Field> fields, const QStringList& chain) {
    return valueRecord(std::span(fields.begin(), fields.size()), chain);
  }

  /// object with all that it leads to, each copied once for the life of the writer; cycles and
  /// sharing are kept. Nil unless the object is sound.
  Uid copy(const ArchiveObject& object);

  /// The whole archive.
  QByteArray finish(Uid root);

 private:
  class Copier;

  Uid scalar(Inline object);
  Uid append(Inline object);
  /// The fields with the class, as a dictionary of the list.
  Inline recordObject(std::span<const Field> fields, const QStringList& chain);
  Uid makeClassRecord(const QStringList& chain, const QStringList& hints);
  Inline uidArray(std::span<const Uid> uids);

  plist::Writer m_list;
  std::vector<Inline> m_objects;
  std::vector<Inline> m_references; // by uid, made when first asked for
  QHash<Inline, Uid> m_scalars;
  QHash<Inline, Uid> m_values;                              // by the dictionary that they are
  QHash<QString, Uid> m_classes;                            // by chain and hints
  std::vector<std::pair<QStringList, Uid>> m_latestClasses; // without hints
  QHash<std::pair<const KeyedArchive*, quint64>, Uid> m_copies;
  std::vector<std::shared_ptr<const KeyedArchive>> m_sources; // alive: m_copies knows them
};

} // namespace tockwise
