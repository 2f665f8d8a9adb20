// Settings by key, as every part of the program reads them: values set by the user over
// registered defaults.
#pragma once

#include "store/value.h"

#include <map>
#include <set>

namespace tockwise {

/// Main thread.
class Settings {
 public:
  virtual ~Settings() = default;

  /// The value that was set for key, else the registered default, else null.
  virtual Value value(const QString& key) const = 0;
  /// Whether a value was set (a registered default does not count).
  virtual bool isSet(const QString& key) const = 0;
  /// Whether a value was set that cannot be read now, since it is kept elsewhere; it reads as its
  /// default.
  virtual bool isUnread(const QString& key) const = 0;
  /// Takes effect at once; reaches the disk with the next synchronize(). A null value removes it.
  virtual void setValue(const QString& key, Value value) = 0;
  /// Writes what changed to the disk and sees what other processes wrote.
  virtual void synchronize() = 0;

  // Typed reading, lenient as property lists from elsewhere require: a boolean is also a number
  // other than 0 or "YES"/"true"/"1"; an integer also a boolean, a real or a numeric string;
  // anything else reads as NO, 0, "" and an empty list.
  bool boolean(const QString& key) const;
  qint64 integer(const QString& key) const;
  QString string(const QString& key) const;
  QStringList stringList(const QString& key) const;
};

/// Settings that live in memory only.
class MemorySettings final : public Settings {
 public:
  explicit MemorySettings(std::map<QString, Value> defaults = {})
      : m_defaults(std::move(defaults)) {}
  Value value(const QString& key) const override;
  bool isSet(const QString& key) const override { return m_values.contains(key); }
  bool isUnread(const QString& key) const override { return m_unread.contains(key); }
  void setUnread(const QString& key) { m_unread.insert(key); }
  void setValue(const QString& key, Value value) override;
  void synchronize() override { ++m_synchronizations; }
  int synchronizations() const { return m_synchronizations; }

 private:
  std::map<QString, Value> m_defaults;
  std::map<QString, Value> m_values;
  std::set<QString> m_unread;
  int m_synchronizations = 0;
};

} // namespace tockwise
