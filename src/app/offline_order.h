// What a tick would do to a store that no application has open: nothing but put it in order.
#pragma once

#include "store/reminder_store.h"

namespace tockwise {

/// Sorts the queue by the current order and saves it when that moved anything. Main thread.
void putInOrder(ReminderStore& store);

} // namespace tockwise
