// Finds out what there is on this desktop, for the checks of doctor.
#pragma once

#include "doctor/doctor.h"
#include "store/reminder_store.h"

#include <QJsonArray>

namespace tockwise {

/// The checks by the running application, which knows the state of its keys and of the password
/// store. Waits for answers from the bus and the sound server, half a second each at most. Main
/// thread.
std::vector<DesktopCheck> checksOfApplication(const PreferencesStore& preferences,
                                              const HotKeys& hotKeys,
                                              const SecretStore& secretStore);

/// The checks by a command while no application runs: opens the store for the settings, and reports
/// when that fails. Waits likewise. Main thread.
std::vector<DesktopCheck> checksWithoutApplication(const Clock& clock);

/// As the command line and D-Bus have them: name, ok, detail, remedy. Any thread.
QJsonArray checksToJson(const std::vector<DesktopCheck>& checks);

} // namespace tockwise
