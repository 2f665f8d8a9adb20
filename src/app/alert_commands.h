// The open alerts as the command line and D-Bus see them, and what these may do with them.
#pragma once

#include "alerts/alert_windows.h"

#include <QJsonArray>

namespace tockwise {

/// One object for each open alert, oldest first. Main thread.
QJsonArray alertsToJson(const AlertWindows& alerts, const ReminderQueue& queue);

/// action: ok, again, delete, show, hide or ok-all; position: counted from 1, or 0 for the oldest
/// alert (show and hide: all of them). NotFound when there is no such alert, Refused for a button
/// that it does not show, Usage for other words. Main thread; delete runs the event loop.
Result<void> alertCommand(AlertWindows& alerts, const QString& action, int position);

} // namespace tockwise
