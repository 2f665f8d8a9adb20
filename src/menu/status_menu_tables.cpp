#include "menu/status_menu_tables.h"

#include "ports/hot_keys.h"

namespace tockwise::menu_tables {
namespace {

// In the order of CommandRow.
constexpr FixedItem kCommands[] = {
    {u"Quit Tockwise", u"quit"},
    {u"Save Reminders...", u"selItemSaveReminders"},
    {u"Open Reminders...", u"selItemOpenReminders"},
    {u"New Reminder...", u"newReminder", letterOf(HotKey::NewReminder)},
    {u"Show All Current Alerts", u"showAllCurrentAlerts", letterOf(HotKey::ShowAlerts)},
    {u"Hide All Current Alerts", u"hideAllCurrentAlerts", letterOf(HotKey::HideAlerts)},
    {u"Print All Current Alerts", u"printAllCurrentAlerts", letterOf(HotKey::PrintAlerts)},
    {u"Close All Current Alerts", u"closeAllCurrentAlerts"},
    {u"Clear All Recent Reminders", u"clearRecent"},
    {u"Preferences...", u"prefs"},
    {u"Clear Queue", u"clearQueue"},
    {u"Import Calendar Events", u"importCalendarEventsPrefs"},
    {u"Print...", u"print"},
    {u"About...", u"about"},
    {u"Preview...", u"print"},
};

constexpr FixedItem kCurrentAlerts[] = {{u"Current Alerts"}};
constexpr FixedItem kRecentReminders[] = {{u"Recent Reminders"}};
constexpr FixedItem kSortQueue[] = {{u"Sort Queue"}};
constexpr FixedItem kOptionsParent[] = {{u"Options"}};
constexpr FixedItem kQueueHeader[] = {{u"Reminder Queue"}};
constexpr FixedItem kNoReminders[] = {{u"No Reminders"}};
constexpr FixedItem kNoAlerts[] = {{u"There Are No Current Alerts"}};

// In the order of the codes 1 to 10 of the setting sortType.
constexpr FixedItem kSortOrders[] = {
    {u"By Date", u"sortByDate"},
    {u"By Reverse Date", u"sortByDateReverse"},
    {u"By Date Created", u"sortByDateCreated"},
    {u"By Reverse Date Created", u"sortByDateCreatedReverse"},
    {u"By Name", u"sortByName"},
    {u"By Reverse Name", u"sortByNameReverse"},
    {u"By Date Fired", u"sortByDateTimeFired"},
    {u"By Reverse Date Fired", u"sortByDateTimeFiredReverse"},
    {u"By Date Modified", u"sortByDateModified"},
    {u"By Reverse Date Modified", u"sortByDateModifiedReverse"},
};

// In the order of OptionRow.
constexpr FixedItem kOptions[] = {
    {u"Show Item Index", u"setShowItemIndex"},
    {u"Show Rich Text", u"setShowRichText"},
    {u"Truncate Reminders", u"truncateReminders"},
    {u"Show Ruler In New Reminder Windows", u"setShowRuler"},
};

} // namespace

std::span<const FixedItem> fixedItems(MenuItemKind kind) {
  switch (kind) {
  case MenuItemKind::Command:
    return kCommands;
  case MenuItemKind::CurrentAlerts:
    return kCurrentAlerts;
  case MenuItemKind::RecentReminders:
    return kRecentReminders;
  case MenuItemKind::SortQueue:
    return kSortQueue;
  case MenuItemKind::Options:
    return kOptionsParent;
  case MenuItemKind::QueueHeader:
    return kQueueHeader;
  case MenuItemKind::NoReminders:
    return kNoReminders;
  case MenuItemKind::NoAlerts:
    return kNoAlerts;
  case MenuItemKind::SortOrder:
    return kSortOrders;
  case MenuItemKind::Option:
    return kOptions;
  default:
    return {};
  }
}

} // namespace tockwise::menu_tables
