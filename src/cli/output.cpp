#include "cli/output.h"

#include "dates/calendar.h"
#include "engine/repeat_rules.h"

#include <QDateTime>
#include <QJsonDocument>

namespace tockwise {
namespace {

QString dateText(const QJsonValue& value) {
  if (value.isNull())
    return QStringLiteral("never");
  const QDateTime instant = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
  if (!instant.isValid())
    return value.toString();
  return Calendar::current().dateStringWithFormat(
      Date::fromUnixSeconds(double(instant.toMSecsSinceEpoch()) / 1000), kDisplayPattern);
}

// A text in one line of a list.
QString oneLine(QString text) {
  for (QChar& c : text) {
    if (c == u'\n' || c == u'\r' || c == u'\t' || c == QChar::LineSeparator ||
        c == QChar::ParagraphSeparator)
      c = u' ';
  }
  return text;
}

QString repetition(const QJsonObject& reminder) {
  Interval interval = kBlankInterval;
  const QJsonArray amounts = reminder[QStringLiteral("reminderIntervals")].toArray();
  for (size_t i = 0; i < interval.size(); ++i)
    interval[i] = amounts[qsizetype(i)].toInteger();
  if (!isRepeatingReminder(interval))
    return QStringLiteral("once");
  const QString label = reminderTypeString(interval);
  return label == u"regular" ? QStringLiteral("repeats") : label;
}

void appendMenu(QString& text, const QJsonArray& items, int depth) {
  for (const auto& value : items) {
    const QJsonObject item = value.toObject();
    text += QString(qsizetype(depth) * 4, u' ');
    if (item[QStringLiteral("separator")].toBool()) {
      text += QStringLiteral("---\n");
      continue;
    }
    text += item[QStringLiteral("checked")].toBool() ? QStringLiteral("* ") : QString();
    text += oneLine(item[QStringLiteral("title")].toString()) + u'\n';
    appendMenu(text, item[QStringLiteral("submenu")].toArray(), depth + 1);
  }
}

} // namespace

QString listText(const QJsonArray& reminders) {
  QString text;
  for (qsizetype i = 0; i < reminders.size(); ++i) {
    const QJsonObject reminder = reminders[i].toObject();
    text += QStringLiteral("%1  %2  %3  ")
                .arg(i + 1, 4)
                .arg(dateText(reminder[QStringLiteral("reminderQueue")]))
                .arg(repetition(reminder), -12);
    text += oneLine(reminder[QStringLiteral("reminderDescriptions")].toString()) + u'\n';
  }
  return text;
}

QString reminderText(const QJsonObject& reminder) {
  QString text;
  for (const QString& key : reminder.keys()) {
    const QJsonValue value = reminder[key];
    QString shown;
    if (key == u"reminderQueue" || key.startsWith(u"reminderDateTime"))
      shown = dateText(value);
    else if (value.isArray())
      shown = QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    else if (value.isObject())
      shown = QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    else
      shown = value.toVariant().toString();
    text += QStringLiteral("%1 ").arg(key + u':', -26) + shown + u'\n';
  }
  return text;
}

QString menuText(const QJsonArray& items) {
  QString text;
  appendMenu(text, items, 0);
  return text;
}

QString alertsText(const QJsonArray& alerts) {
  QString text;
  for (const auto& value : alerts) {
    const QJsonObject alert = value.toObject();
    text += QStringLiteral("%1  %2  ")
                .arg(alert[QStringLiteral("position")].toInt(), 4)
                .arg(dateText(alert[QStringLiteral("date")]));
    text += oneLine(alert[QStringLiteral("text")].toString());
    text += alert[QStringLiteral("shown")].toBool() ? u"\n" : u" (hidden)\n";
  }
  return text;
}

QString checksText(const QJsonArray& checks) {
  QString text;
  for (const auto& value : checks) {
    const QJsonObject check = value.toObject();
    const bool ok = check[QStringLiteral("ok")].toBool();
    text += QStringLiteral("%1 %2: %3")
                .arg(ok ? QStringLiteral("ok     ") : QStringLiteral("missing"),
                     check[QStringLiteral("name")].toString(),
                     oneLine(check[QStringLiteral("detail")].toString()));
    const QString remedy = oneLine(check[QStringLiteral("remedy")].toString());
    text += remedy.isEmpty() ? QStringLiteral("\n") : u' ' + remedy + u'\n';
  }
  return text;
}

} // namespace tockwise
