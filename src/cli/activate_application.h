// Commands that open a window of the application, which is started when it does not run.
#pragma once

#include "base/result.h"

#include <QString>

namespace tockwise {

/// Asks for one of the application's desktop actions (docs/dbus.md), and returns as soon as it is
/// on its way. An application that does not run is started, by the bus where it knows how, else
/// as another process of this program. Unavailable without a session bus or a display to start it
/// on; Busy when it did not come within ten seconds. Waits for it. Main thread.
Result<void> activateApplication(const QString& action);

} // namespace tockwise
