// One call on the session bus, waited for.
#pragma once

#include "base/result.h"

#include <QDBusMessage>

namespace tockwise {

/// The answer, or the error, that message got; it may take as long as a question stays open. Busy
/// when the bus ended meanwhile. Runs an event loop. Main thread.
Result<QDBusMessage> callAndWait(const QDBusMessage& message);

} // namespace tockwise
