#include "store/settings.h"

#include <cmath>

namespace tockwise {

bool Settings::boolean(const QString& key) const {
  const Value stored = value(key);
  if (const bool* flag = stored.get<bool>())
    return *flag;
  if (const QString* text = stored.get<QString>()) {
    return text->compare(u"YES", Qt::CaseInsensitive) == 0 ||
           text->compare(u"true", Qt::CaseInsensitive) == 0 || text->toLongLong() != 0;
  }
  return integer(key) != 0;
}

qint64 Settings::integer(const QString& key) const {
  const Value stored = value(key);
  if (const qint64* number = stored.get<qint64>())
    return *number;
  if (const bool* flag = stored.get<bool>())
    return *flag ? 1 : 0;
  if (const double* real = stored.get<double>())
    return std::fabs(*real) < 9e18 ? qint64(*real) : 0;
  if (const QString* text = stored.get<QString>())
    return text->toLongLong();
  return 0;
}

QString Settings::string(const QString& key) const {
  const Value stored = value(key);
  if (const QString* text = stored.get<QString>())
    return *text;
  if (const qint64* number = stored.get<qint64>())
    return QString::number(*number);
  return {};
}

QStringList Settings::stringList(const QString& key) const {
  return value(key).strings().value_or(QStringList());
}

Value MemorySettings::value(const QString& key) const {
  if (const auto found = m_values.find(key); found != m_values.end())
    return found->second;
  if (const auto found = m_defaults.find(key); found != m_defaults.end())
    return found->second;
  return {};
}

void MemorySettings::setValue(const QString& key, Value value) {
  m_unread.erase(key);
  if (value.isNull())
    m_values.erase(key);
  else
    m_values[key] = std::move(value);
}

} // namespace tockwise
