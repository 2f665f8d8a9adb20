// What commands print for a person; the JSON forms are the application's. Any one thread.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace tockwise {

/// One line a reminder: position, date, repetition, text.
QString listText(const QJsonArray& reminders);
/// One field a line.
QString reminderText(const QJsonObject& reminder);
/// The menu as an indented list.
QString menuText(const QJsonArray& items);
/// One line an alert.
QString alertsText(const QJsonArray& alerts);
/// One line a check: whether it is well, what was found, and what to do about it.
QString checksText(const QJsonArray& checks);

} // namespace tockwise
