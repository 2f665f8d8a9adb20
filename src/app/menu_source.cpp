#include "app/menu_source.h"

#include "dates/calendar.h"
#include "menu/sort/queue_sort.h"
#include "menu/status_menu.h"

namespace tockwise {
namespace {

// The operations that AppController carries out; the menu shows all others disabled.
QSet<QString> availableActions() {
  QSet<QString> actions{
      QStringLiteral("quit"),
      QStringLiteral("about"),
      QStringLiteral("deleteMenuItem"),
      QStringLiteral("exposeCurrentAlert"),
      QStringLiteral("showAllCurrentAlerts"),
      QStringLiteral("hideAllCurrentAlerts"),
      QStringLiteral("closeAllCurrentAlerts"),
  };
  for (const SortOrder& order : sortOrders())
    actions.insert(QString::fromUtf16(order.action));
  return actions;
}

} // namespace

MenuInput menuInput(const ReminderStore& store, std::vector<OpenAlert> openAlerts,
                    RichTitles* richTitles) {
  MenuInput input;
  input.queue = &store.queue();
  input.recentReminders = store.recentReminders().entries();
  input.settings = &store.preferences();
  input.openAlerts = std::move(openAlerts);
  input.sortTypeText = sortTypeText(store.preferences().integer(QStringLiteral("sortType")));
  input.now = store.clock().now();
  input.richTitles = richTitles;
  input.availableActions = availableActions();
  return input;
}

std::vector<MenuItem> menuWithoutApplication(const ReminderStore& store) {
  return buildStatusMenu(menuInput(store, {}, nullptr), Calendar::current());
}

} // namespace tockwise
