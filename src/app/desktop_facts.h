// Finds out what there is on this desktop, for the checks of doctor.
#pragma once

#include "doctor/doctor.h"
#include "ports/hot_keys.h"
#include "ports/login_items.h"
#include "ports/secret_store.h"
#include "store/reminder_store.h"

namespace tockwise {

/// What can be found out with or without a running application. Waits for answers from the bus,
/// at most a second in all. Main thread.
DesktopFacts desktopFacts(const ReminderStore& store, const LoginItems& loginItems);

} // namespace tockwise
