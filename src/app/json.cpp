#include "app/json.h"

#include "dates/date_text.h"
#include "store/reminder_queue.h"

#include <QJsonDocument>

namespace tockwise {
namespace {

template <typename Numbers> QJsonArray numbersToJson(const Numbers& numbers) {
  QJsonArray array;
  for (const auto number : numbers)
    array.append(QJsonValue(number));
  return array;
}

QJsonValue toJson(Date date) {
  if (isDistantPast(date))
    return QJsonValue::Null;
  return iso8601UTC(date);
}
QJsonValue toJson(qint64 number) {
  return number;
}
QJsonValue toJson(bool flag) {
  return flag;
}
QJsonValue toJson(const QString& text) {
  return text;
}
QJsonValue toJson(const QByteArray& data) {
  return QString::fromLatin1(data.toBase64());
}
QJsonValue toJson(const Interval& interval) {
  return numbersToJson(interval);
}
QJsonValue toJson(const Offset& offset) {
  return numbersToJson(offset);
}
QJsonValue toJson(const Extra& extra) {
  return QJsonObject{{QStringLiteral("days"), numbersToJson(extra.days)},
                     {QStringLiteral("times"), numbersToJson(extra.times)}};
}
QJsonValue toJson(const Task& task) {
  if (task.blank)
    return QJsonObject{{QStringLiteral("nil"), QStringLiteral("nil")}};
  return QJsonObject{{QStringLiteral("type"), task.type}, {QStringLiteral("path"), task.path}};
}

} // namespace

QJsonObject reminderToJson(const Reminder& reminder) {
  static const Columns columns;
  QJsonObject object;
  std::apply(
      [&](const auto&... field) {
        (object.insert((columns.*(field.first)).key(), toJson(reminder.*(field.second))), ...);
      },
      kFields);
  return object;
}

QString jsonText(const QJsonArray& array) {
  return QString::fromUtf8(QJsonDocument(array).toJson());
}

QString jsonText(const QJsonObject& object) {
  return QString::fromUtf8(QJsonDocument(object).toJson());
}

} // namespace tockwise
