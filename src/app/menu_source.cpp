#include "app/menu_source.h"

#include "app/menu_operations.h"
#include "dates/calendar.h"
#include "menu/status_menu.h"
#include "menu/status_menu_tables.h"

namespace tockwise {
namespace {

// Null for a setting that names no order; unlike asking the sort, looking at it does not beep.
QString orderText(qint64 sortType) {
  const auto orders = sortOrders();
  if (sortType < 1 || sortType > qint64(orders.size()))
    return {};
  return QString::fromUtf16(orders[size_t(sortType - 1)].text);
}

} // namespace

std::optional<SortType> sortTypeOfAction(const QString& action) {
  const auto items = menu_tables::fixedItems(MenuItemKind::SortOrder);
  for (size_t i = 0; i < items.size(); ++i) {
    if (action == QStringView(items[i].action))
      return SortType(i + 1);
  }
  return std::nullopt;
}

MenuInput menuInput(const ReminderStore& store, std::vector<OpenAlert> openAlerts,
                    RichTitles* richTitles) {
  MenuInput input;
  input.queue = &store.queue();
  input.recentReminders = store.recentReminders().entries();
  input.settings = &store.preferences();
  input.openAlerts = std::move(openAlerts);
  input.sortTypeText = orderText(store.preferences().integer(QStringLiteral("sortType")));
  input.now = store.clock().now();
  input.richTitles = richTitles;
  input.availableActions = availableMenuOperations();
  return input;
}

std::vector<MenuItem> menuWithoutApplication(const ReminderStore& store) {
  return buildStatusMenu(menuInput(store, {}, nullptr), Calendar::current());
}

} // namespace tockwise
