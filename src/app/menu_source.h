// The status menu's input, taken from the store.
#pragma once

#include "menu/menu_input.h"
#include "menu/menu_item.h"
#include "menu/sort/queue_sort.h"
#include "store/reminder_store.h"

#include <optional>
#include <vector>

namespace tockwise {

/// Main thread. richTitles: null for plain titles.
MenuInput menuInput(const ReminderStore& store, std::vector<OpenAlert> openAlerts,
                    RichTitles* richTitles);

/// The order that a menu operation chooses ("sortByName"), if it is one of the ten.
std::optional<SortType> sortTypeOfAction(const QString& action);

/// The status menu as it would be shown now by an application without open alerts.
std::vector<MenuItem> menuWithoutApplication(const ReminderStore& store);

} // namespace tockwise
