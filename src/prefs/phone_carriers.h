// The phone carriers that the preferences offer for text messages.
#pragma once

#include <QStringList>

namespace tockwise {

/// Each a carrier's domain for mail that becomes a text message, a blank, and the carrier in
/// parentheses; the last is "Unsure". Any thread.
QStringList phoneCarriers();

} // namespace tockwise
