// Finds out what there is on this desktop, for the checks of doctor.
#pragma once

#include "doctor/doctor.h"
#include "store/reminder_store.h"

#include <QJsonArray>

namespace tockwise {

/// What can be found out without asking the running application. Waits for answers from the bus
/// and the sound server, half a second each at most. Main thread.
DesktopFacts desktopFacts();

/// The settings that the checks compare the desktop with.
void addSettings(DesktopFacts& facts, const Settings& settings);

/// What the store's files say; reason: why the store could not be opened, or "".
StoreFacts storeFacts(const PreferencesStore::Paths& paths, const QString& reason);

QJsonArray checksToJson(const std::vector<DesktopCheck>& checks);

/// The checks by a command while no application runs: opens the store for the settings, and reports
/// when that fails.
std::vector<DesktopCheck> checksWithoutApplication(const Clock& clock);

} // namespace tockwise
