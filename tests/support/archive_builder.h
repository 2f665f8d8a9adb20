// Keyed archives made object by object, as a test needs them: sound or not.
#pragma once

#include "store/plist_writer.h"
#include "store/value.h"

#include <QStringList>

namespace tockwise {

class ArchiveBuilder {
 public:
  using Uid = Value::Uid;

  ArchiveBuilder() { m_objects.emplace_back(QStringLiteral("$null")); }

  Uid add(Value object) {
    m_objects.push_back(std::move(object));
    return {m_objects.size() - 1};
  }
  Uid text(const char* utf8) { return add(QString::fromUtf8(utf8)); }

  /// A class with its superclasses, NSObject left out.
  Uid classRecord(QStringList chain) {
    chain.append(QStringLiteral("NSObject"));
    return add(Value::Dictionary{{QStringLiteral("$classname"), chain.first()},
                                 {QStringLiteral("$classes"), chain}});
  }
  Uid record(Value::Dictionary fields, const QStringList& chain) {
    const Uid uid = add(Value());
    set(uid, std::move(fields), chain);
    return uid;
  }
  /// Fills in an object that was added before, so that it can hold itself.
  void set(Uid uid, Value::Dictionary fields, const QStringList& chain) {
    fields.emplace_back(QStringLiteral("$class"), classRecord(chain));
    m_objects[uid.index] = std::move(fields);
  }

  Uid array(Value::Array elements) {
    return record({{QStringLiteral("NS.objects"), std::move(elements)}},
                  {QStringLiteral("NSArray")});
  }
  Uid dictionary(const std::vector<std::pair<Uid, Uid>>& pairs) {
    Value::Array keys;
    Value::Array values;
    for (const auto& [key, value] : pairs) {
      keys.emplace_back(key);
      values.emplace_back(value);
    }
    return record({{QStringLiteral("NS.keys"), std::move(keys)},
                   {QStringLiteral("NS.objects"), std::move(values)}},
                  {QStringLiteral("NSDictionary")});
  }
  /// A text storage with one run of those attributes, or with several as the table says.
  Uid textStorage(const QString& text, Uid attributes, const QByteArray& table = {}) {
    Value::Dictionary fields{{QStringLiteral("NSString"), add(text)},
                             {QStringLiteral("NSAttributes"), attributes}};
    if (!table.isEmpty())
      fields.emplace_back(QStringLiteral("NSAttributeInfo"), add(table));
    return record(std::move(fields),
                  {QStringLiteral("NSTextStorage"), QStringLiteral("NSMutableAttributedString"),
                   QStringLiteral("NSAttributedString")});
  }

  QByteArray finish(Uid root, qint64 version = 100000) const {
    plist::Writer writer;
    return writer.finish(writer.value(Value::Dictionary{
        {QStringLiteral("$version"), version},
        {QStringLiteral("$archiver"), QStringLiteral("NSKeyedArchiver")},
        {QStringLiteral("$top"), Value::Dictionary{{QStringLiteral("root"), root}}},
        {QStringLiteral("$objects"), m_objects}}));
  }

 private:
  Value::Array m_objects;
};

} // namespace tockwise
