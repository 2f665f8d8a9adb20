// The store as the program opens it. Tests that use it have a TestEnvironment, and link
// tockwise_store.
#pragma once

#include "store/reminder_store.h"

namespace tockwise {

/// The store of the test's own user; a test whose store cannot be opened ends. The clock outlives
/// it.
inline std::unique_ptr<ReminderStore> openUserStore(const Clock& clock) {
  auto store = ReminderStore::open(PreferencesStore::Paths::ofUser(), clock);
  if (!store)
    qFatal("%s", qPrintable(store.error().message));
  return std::move(store).value();
}

} // namespace tockwise
