// What a tick would do to a store that no application has open: nothing but put it in order.
#pragma once

#include "menu/menu_item.h"
#include "store/reminder_store.h"

#include <vector>

namespace tockwise {

/// Sorts the queue by the current order and saves it when that moved anything. Main thread.
void putInOrder(ReminderStore& store);

/// The status menu as it would be shown now. alertTexts: the texts of the open alerts, in order.
std::vector<MenuItem> currentMenu(const ReminderStore& store, const QStringList& alertTexts);

} // namespace tockwise
