#include "app/menu_operations.h"

#include "app/about.h"
#include "app/app_controller.h"
#include "app/menu_source.h"
#include "base/log.h"
#include "menu/status_menu_tables.h"

#include <algorithm>

namespace tockwise {
namespace {

struct Operation {
  const char16_t* name;
  void (*perform)(AppController& controller, const MenuActivation& chosen);
};

void exposeAlert(AppController& controller, qsizetype position) {
  if (const auto exposed = controller.alerts().exposeCurrentAlert(position); !exposed)
    logLine(exposed.error().message);
}

using Controller = AppController;
using Chosen = MenuActivation;

// The sort orders and the display options have tables of their own.
constexpr Operation kOperations[] = {
    {u"quit", [](Controller& controller, const Chosen&) { controller.quit(); }},
    {u"about", [](Controller& controller, const Chosen&) { about(controller.prompter()); }},
    {u"newReminder",
     [](Controller& controller, const Chosen&) { controller.editing().newReminder(); }},
    {u"showReminder",
     [](Controller& controller, const Chosen& chosen) {
       controller.editing().showReminder(chosen.reminderUUID);
     }},
    {u"prefs", [](Controller& controller, const Chosen&) { controller.prefs(); }},
    {u"importCalendarEventsPrefs",
     [](Controller& controller, const Chosen&) { controller.importCalendarEventsPrefs(); }},
    {u"selItemSaveReminders",
     [](Controller& controller, const Chosen&) { controller.documents().selItemSaveReminders(); }},
    {u"selItemOpenReminders",
     [](Controller& controller, const Chosen&) { controller.documents().selItemOpenReminders(); }},
    {u"print", [](Controller& controller, const Chosen&) { controller.printing().print(); }},
    {u"printAllCurrentAlerts",
     [](Controller& controller, const Chosen&) { controller.printing().printAllCurrentAlerts(); }},
    {u"deleteMenuItem",
     [](Controller& controller, const Chosen& chosen) {
       controller.deleteMenuItem(chosen.reminderUUID);
     }},
    {u"copyMenuItem", [](Controller& controller,
                         const Chosen& chosen) { controller.copyMenuItem(chosen.reminderUUID); }},
    {u"recentReminder",
     [](Controller& controller, const Chosen& chosen) {
       controller.recentReminder(chosen.tag, chosen.title);
     }},
    {u"clearRecent", [](Controller& controller, const Chosen&) { controller.clearRecent(); }},
    {u"clearQueue", [](Controller& controller, const Chosen&) { controller.clearQueue(); }},
    {u"exposeCurrentAlert",
     [](Controller& controller, const Chosen& chosen) { exposeAlert(controller, chosen.tag); }},
    {u"showAllCurrentAlerts",
     [](Controller& controller, const Chosen&) { controller.alerts().showAllCurrentAlerts(); }},
    {u"hideAllCurrentAlerts",
     [](Controller& controller, const Chosen&) { controller.alerts().hideAllCurrentAlerts(); }},
    {u"closeAllCurrentAlerts",
     [](Controller& controller, const Chosen&) { controller.alerts().closeAllCurrentAlerts(); }},
};

} // namespace

QSet<QString> availableMenuOperations() {
  QSet<QString> names;
  for (const Operation& operation : kOperations)
    names.insert(QString::fromUtf16(operation.name));
  for (const QString& toggle : toggleActions())
    names.insert(toggle);
  for (const auto& item : menu_tables::fixedItems(MenuItemKind::SortOrder))
    names.insert(QString::fromUtf16(item.action));
  return names;
}

void performMenuOperation(AppController& controller, const MenuActivation& activation) {
  const auto* operation = std::find_if(std::begin(kOperations), std::end(kOperations),
                                       [&activation](const Operation& candidate) {
                                         return activation.action == QStringView(candidate.name);
                                       });
  if (operation != std::end(kOperations))
    operation->perform(controller, activation);
  else if (const auto setting = settingOfToggle(activation.action))
    controller.toggle(*setting);
  else if (const auto order = sortTypeOfAction(activation.action))
    controller.sortBy(*order);
}

} // namespace tockwise
