// A property-list value: what the preferences store and reminders documents are made of.
#pragma once

#include "base/date.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace tockwise {

/// Main or any one thread; a plain value.
class Value {
 public:
  /// An index into the objects of a keyed archive.
  struct Uid {
    quint64 index = 0;
    friend bool operator==(Uid, Uid) = default;
  };
  using Array = std::vector<Value>;
  /// Insertion order is kept; keys are unique.
  using Dictionary = std::vector<std::pair<QString, Value>>;

  Value() = default; // null: no value
  Value(bool value) : m_data(value) {}
  Value(int value) : m_data(qint64(value)) {}
  Value(qint64 value) : m_data(value) {}
  Value(double value) : m_data(value) {}
  Value(Date value) : m_data(value) {}
  Value(QByteArray value) : m_data(std::move(value)) {}
  Value(QString value) : m_data(std::move(value)) {}
  Value(Uid value) : m_data(value) {}
  Value(Array value) : m_data(std::move(value)) {}
  Value(Dictionary value) : m_data(std::move(value)) {}
  Value(const QStringList& strings);
  Value(const char*) = delete; // would become a boolean

  bool isNull() const { return std::holds_alternative<std::monostate>(m_data); }
  template <typename T> const T* get() const { return std::get_if<T>(&m_data); }
  /// The entry of a dictionary, or nothing.
  const Value* find(QStringView key) const;
  /// An array of strings only, else nothing.
  std::optional<QStringList> strings() const;

  const auto& data() const { return m_data; }
  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<std::monostate, bool, qint64, double, Date, QByteArray, QString, Uid, Array,
               Dictionary>
      m_data;
};

/// Copies the entry of a dictionary into target; false, leaving target alone, when there is none or
/// it is of another kind.
template <typename T> bool readEntry(const Value& dictionary, QStringView key, T& target) {
  const Value* value = dictionary.find(key);
  const T* found = value ? value->get<T>() : nullptr;
  if (found)
    target = *found;
  return found != nullptr;
}

} // namespace tockwise
