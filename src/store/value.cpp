#include "store/value.h"

namespace tockwise {

Value::Value(const QStringList& strings) {
  Array array;
  array.reserve(size_t(strings.size()));
  for (const QString& string : strings)
    array.emplace_back(string);
  m_data = std::move(array);
}

const Value* Value::find(QStringView key) const {
  if (const Dictionary* dictionary = get<Dictionary>()) {
    for (const auto& [name, value] : *dictionary) {
      if (name == key)
        return &value;
    }
  }
  return nullptr;
}

std::optional<QStringList> Value::strings() const {
  const Array* array = get<Array>();
  if (!array)
    return std::nullopt;
  QStringList result;
  for (const Value& element : *array) {
    const QString* string = element.get<QString>();
    if (!string)
      return std::nullopt;
    result.append(*string);
  }
  return result;
}

} // namespace tockwise
