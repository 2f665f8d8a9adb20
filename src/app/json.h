// The JSON forms of the command line and of D-Bus; docs/command-line.md describes them.
#pragma once

#include "store/reminder.h"

#include <QJsonArray>
#include <QJsonObject>

namespace tockwise {

/// The sixteen stored keys: dates as ISO 8601 UTC with fractions (the distant past as null), data
/// as base64.
QJsonObject reminderToJson(const Reminder& reminder);

/// One JSON value as UTF-8 text, indented.
QString jsonText(const QJsonArray& array);
QString jsonText(const QJsonObject& object);

} // namespace tockwise
