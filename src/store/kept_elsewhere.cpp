#include "store/kept_elsewhere.h"

#include "store/plist_writer.h"
#include "store/root_dictionary.h"

#include <QStringList>

#include <algorithm>

namespace tockwise {

const QString kKeptElsewhere = QStringLiteral("keptElsewhere");

std::set<QString> keptElsewhere(const plist::Reader& reader) {
  const auto found = reader.find(reader.root(), kKeptElsewhere);
  if (!found)
    return {};
  const QStringList keys = reader.value(*found).strings().value_or(QStringList());
  return {keys.begin(), keys.end()};
}

Value keptElsewhereValue(const std::set<QString>& keys) {
  return Value(QStringList(keys.begin(), keys.end()));
}

QByteArray withoutValues(const QByteArray& bytes, const std::set<QString>& keys) {
  const auto reader = plist::openRootDictionary(bytes);
  const bool hasSome = reader && std::any_of(keys.begin(), keys.end(), [&](const QString& key) {
                         return reader->find(reader->root(), key).has_value();
                       });
  if (!hasSome)
    return bytes;
  const Value root = reader->value(reader->root());
  Value::Dictionary kept;
  std::set<QString> named = keys;
  for (const auto& [key, value] : *root.get<Value::Dictionary>()) {
    const QStringList before = value.strings().value_or(QStringList());
    if (key == kKeptElsewhere)
      named.insert(before.begin(), before.end());
    else if (!keys.contains(key))
      kept.emplace_back(key, value);
  }
  kept.emplace_back(kKeptElsewhere, keptElsewhereValue(named));
  plist::Writer writer;
  return writer.finish(writer.value(Value(std::move(kept))));
}

} // namespace tockwise
