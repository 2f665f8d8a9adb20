// One call on the session bus, waited for.
#pragma once

#include "base/result.h"

#include <QDBusMessage>

#include <chrono>
#include <limits>

namespace tockwise {

/// As long as a question stays open.
inline constexpr std::chrono::milliseconds kAnyTime{std::numeric_limits<int>::max()};

/// The answer, or the error, that message got; after patience, that of a time-out. Busy when the
/// bus ended meanwhile. Runs an event loop. Main thread.
Result<QDBusMessage> callAndWait(const QDBusMessage& message,
                                 std::chrono::milliseconds patience = kAnyTime);

} // namespace tockwise
