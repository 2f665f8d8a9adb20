#include "menu/status_menu.h"

#include "engine/repeat_rules.h"
#include "menu/status_menu_tables.h"
#include "store/text_cut.h"

#include <algorithm>

namespace tockwise {
namespace {

using namespace menu_tables;
using Kind = MenuItemKind;

const FixedItem* fixedItem(const MenuEntry& entry) {
  const auto items = fixedItems(entry.kind);
  return entry.row >= 0 && size_t(entry.row) < items.size() ? &items[size_t(entry.row)] : nullptr;
}

QString fixedTitle(const FixedItem& item, bool useGlobalHotKeys) {
  QString title = QString::fromUtf16(item.title);
  if (useGlobalHotKeys && item.hotKey)
    title += QStringLiteral("\t\t\t^\u2318") + QChar(item.hotKey);
  return title;
}

bool isReminderKind(Kind kind) {
  switch (kind) {
  case Kind::ReminderIndex:
  case Kind::ReminderDate:
  case Kind::ReminderCountdown:
  case Kind::ReminderLast:
  case Kind::ReminderTitle:
  case Kind::ReminderSeparator:
  case Kind::ReminderDelete:
  case Kind::ReminderCopy:
  case Kind::ReminderShow:
    return true;
  default:
    return false;
  }
}

/// Submenu items with separators between the groups, each with a row of its own.
class Builder {
 public:
  explicit Builder(std::vector<MenuEntry>& entries) : m_entries(entries) {}
  Builder& command(CommandRow row) { return add(Kind::Command, row); }
  Builder& separator() { return add(Kind::Separator, m_separators++); }
  Builder& add(Kind kind, qint32 row = 0, QString reminderUUID = {}) {
    m_entries.push_back({kind, row, std::move(reminderUUID)});
    return *this;
  }
  Builder& addAll(Kind kind) {
    for (size_t row = 0; row < fixedItems(kind).size(); ++row)
      add(kind, qint32(row));
    return *this;
  }

 private:
  std::vector<MenuEntry>& m_entries;
  qint32 m_separators = 0;
};

} // namespace

StatusMenu::StatusMenu(MenuInput input, const Calendar& calendar) : m_input(std::move(input)) {
  if (const Settings* settings = m_input.settings) {
    m_options = {settings->boolean(QStringLiteral("showItemIndex")),
                 settings->boolean(QStringLiteral("showRichText")),
                 settings->boolean(QStringLiteral("truncateReminders")),
                 settings->boolean(QStringLiteral("showRuler")),
                 settings->boolean(QStringLiteral("useAbsolute")),
                 settings->boolean(QStringLiteral("useCountdown")),
                 settings->boolean(QStringLiteral("useGlobalHotKeys")),
                 settings->integer(QStringLiteral("sortType"))};
    m_input.settings = nullptr; // read once: the texts are those of one moment
  }
  appendFixedItems();
  appendReminders(calendar);
}

void StatusMenu::appendFixedItems() {
  Builder menu(m_entries);
  menu.command(Quit).separator();
  menu.command(SaveReminders).command(OpenReminders).separator();
  menu.command(NewReminder).separator();
  menu.add(Kind::CurrentAlerts).separator();
  menu.add(Kind::RecentReminders).separator();
  menu.command(Preferences).add(Kind::SortQueue).command(ClearQueue);
  menu.command(ImportCalendarEvents).command(Print).command(About).add(Kind::Options);
  menu.command(Preview).separator();
  menu.add(Kind::QueueHeader).add(Kind::QueueCount).separator();
}

void StatusMenu::appendReminders(const Calendar& calendar) {
  const qsizetype count = m_input.queue ? m_input.queue->count() : 0;
  if (count == 0) {
    m_entries.push_back({Kind::NoReminders, 0, {}});
    return;
  }
  const Columns& columns = m_input.queue->columns();
  m_entries.reserve(m_entries.size() + size_t(count) * 6);
  for (qsizetype i = 0; i < count; ++i) {
    const QString* found = columns.reminderUUID.find(i);
    const QString uuid = found ? *found : QString();
    const auto add = [&](Kind kind) { m_entries.push_back({kind, qint32(i), uuid}); };
    if (m_options.showItemIndex)
      add(Kind::ReminderIndex);
    if (m_options.useAbsolute)
      add(Kind::ReminderDate);
    if (m_options.useCountdown) {
      add(Kind::ReminderCountdown);
      const Date* fired = columns.reminderDateTimeFired.find(i);
      if (fired &&
          hasLastLine(columns.reminderQueue.values()[size_t(i)], *fired, m_input.now, calendar))
        add(Kind::ReminderLast);
    }
    add(Kind::ReminderTitle);
    add(Kind::ReminderSeparator);
  }
}

bool StatusMenu::hasSubmenu(const MenuEntry& entry) {
  switch (entry.kind) {
  case Kind::CurrentAlerts:
  case Kind::RecentReminders:
  case Kind::SortQueue:
  case Kind::Options:
  case Kind::ReminderTitle:
    return true;
  default:
    return false;
  }
}

std::vector<MenuEntry> StatusMenu::submenu(const MenuEntry& entry) const {
  std::vector<MenuEntry> entries;
  Builder menu(entries);
  switch (entry.kind) {
  case Kind::CurrentAlerts:
    if (m_input.openAlerts.empty()) {
      menu.add(Kind::NoAlerts);
      break;
    }
    for (size_t i = 0; i < m_input.openAlerts.size(); ++i)
      menu.add(Kind::Alert, qint32(i), m_input.openAlerts[i].reminderUUID);
    menu.separator().command(ShowAllAlerts).command(HideAllAlerts).command(PrintAllAlerts);
    menu.separator().command(CloseAllAlerts);
    break;
  case Kind::RecentReminders:
    for (size_t i = 0; i < m_input.recentReminders.size(); ++i)
      menu.add(Kind::Recent, qint32(i));
    menu.separator().command(ClearRecent);
    break;
  case Kind::SortQueue:
    menu.addAll(Kind::SortOrder);
    break;
  case Kind::Options:
    menu.addAll(Kind::Option);
    break;
  case Kind::ReminderTitle:
    menu.add(Kind::ReminderDelete, entry.row, entry.reminderUUID);
    menu.add(Kind::ReminderCopy, entry.row, entry.reminderUUID);
    break;
  default:
    break;
  }
  return entries;
}

std::vector<MenuEntry> StatusMenu::submenuWithOwnAction(const MenuEntry& entry) const {
  std::vector<MenuEntry> entries = submenu(entry);
  if (entry.kind == Kind::ReminderTitle && isActionAvailable(entry)) {
    const MenuEntry separator{Kind::ReminderSeparator, entry.row, entry.reminderUUID};
    const MenuEntry show{Kind::ReminderShow, entry.row, entry.reminderUUID};
    entries.insert(entries.begin(), {show, separator});
  }
  return entries;
}

std::vector<MenuEntry> StatusMenu::entriesUpTo(qsizetype reminders) const {
  const qsizetype count = m_input.queue ? m_input.queue->count() : 0;
  if (count <= reminders)
    return m_entries;
  const auto beyond = std::find_if(m_entries.begin(), m_entries.end(), [&](const MenuEntry& entry) {
    return isReminderKind(entry.kind) && entry.row >= reminders;
  });
  std::vector<MenuEntry> entries(m_entries.begin(), beyond);
  entries.push_back({Kind::MoreReminders, qint32(count - reminders), {}});
  return entries;
}

bool StatusMenu::isSeparator(const MenuEntry& entry) {
  return entry.kind == Kind::Separator || entry.kind == Kind::ReminderSeparator;
}

bool StatusMenu::isLive(const MenuEntry& entry) {
  return entry.kind == Kind::ReminderCountdown || entry.kind == Kind::ReminderLast;
}

QString StatusMenu::action(const MenuEntry& entry) const {
  if (const FixedItem* item = fixedItem(entry))
    return QString::fromUtf16(item->action);
  switch (entry.kind) {
  case Kind::ReminderTitle:
  case Kind::ReminderShow:
    return QStringLiteral("showReminder");
  case Kind::MoreReminders:
    return QString::fromUtf16(kShowMenuWindow);
  case Kind::ReminderDelete:
    return QStringLiteral("deleteMenuItem");
  case Kind::ReminderCopy:
    return QStringLiteral("copyMenuItem");
  case Kind::Alert:
    return QStringLiteral("exposeCurrentAlert");
  case Kind::Recent:
    return QStringLiteral("recentReminder");
  default:
    return {};
  }
}

qint64 StatusMenu::tag(const MenuEntry& entry) const {
  switch (entry.kind) {
  case Kind::ReminderTitle:
  case Kind::ReminderDelete:
  case Kind::ReminderCopy:
  case Kind::ReminderShow:
  case Kind::Alert:
  case Kind::Recent:
    return entry.row;
  default:
    return 0;
  }
}

bool StatusMenu::isActionAvailable(const MenuEntry& entry) const {
  if (entry.kind == Kind::MoreReminders)
    return true;
  const QString name = action(entry);
  return !name.isEmpty() && m_input.availableActions.contains(name);
}

bool StatusMenu::isEnabled(const MenuEntry& entry) const {
  // A reminder whose editor is missing can still be deleted: its submenu must open.
  return hasSubmenu(entry) || isActionAvailable(entry);
}

bool StatusMenu::isCheckable(const MenuEntry& entry) {
  return entry.kind == Kind::SortOrder || entry.kind == Kind::Option;
}

bool StatusMenu::isChecked(const MenuEntry& entry) const {
  if (entry.kind == Kind::SortOrder)
    return m_options.sortType == entry.row + 1;
  if (entry.kind != Kind::Option)
    return false;
  switch (OptionRow(entry.row)) {
  case ShowItemIndex:
    return m_options.showItemIndex;
  case ShowRichText:
    return m_options.showRichText;
  case TruncateReminders:
    return m_options.truncateReminders;
  case ShowRuler:
    return m_options.showRuler;
  }
  return false;
}

QString StatusMenu::title(const MenuEntry& entry, const Calendar& calendar) const {
  if (const FixedItem* item = fixedItem(entry))
    return fixedTitle(*item, m_options.useGlobalHotKeys);
  const auto row = size_t(entry.row);
  switch (entry.kind) {
  case Kind::QueueCount:
    return countText();
  case Kind::Alert:
    return row < m_input.openAlerts.size() ? cutText(m_input.openAlerts[row].text, kAlertCharacters)
                                           : QString();
  case Kind::Recent:
    return row < m_input.recentReminders.size() ? m_input.recentReminders[row].description
                                                : QString();
  case Kind::ReminderDelete:
    return QStringLiteral("Delete");
  case Kind::ReminderCopy:
    return QStringLiteral("Copy");
  case Kind::ReminderShow:
    return QStringLiteral("Show");
  case Kind::MoreReminders:
    return QString::number(entry.row) + QStringLiteral(" More Reminders...");
  default:
    return reminderText(entry, calendar);
  }
}

QString StatusMenu::countText() const {
  const qsizetype count = m_input.queue ? m_input.queue->count() : 0;
  if (count == 0)
    return QStringLiteral("0 items");
  if (count == 1)
    return QStringLiteral("1 item");
  return QString::number(count) + QStringLiteral(" items, sorted by: ") +
         (m_input.sortTypeText.isNull() ? QStringLiteral("(null)") : m_input.sortTypeText);
}

std::optional<qsizetype> StatusMenu::indexOf(const MenuEntry& entry) const {
  if (!isReminderKind(entry.kind) || !m_input.queue)
    return std::nullopt;
  const QString* uuid = m_input.queue->columns().reminderUUID.find(entry.row);
  if (uuid ? *uuid == entry.reminderUUID : entry.reminderUUID.isEmpty())
    return entry.row;
  return entry.reminderUUID.isEmpty() ? std::nullopt : m_input.queue->indexOf(entry.reminderUUID);
}

QString StatusMenu::reminderText(const MenuEntry& entry, const Calendar& calendar) const {
  const auto index = indexOf(entry);
  const Date* fireDate = index ? m_input.queue->columns().reminderQueue.find(*index) : nullptr;
  if (!fireDate)
    return {};
  const Columns& columns = m_input.queue->columns();
  switch (entry.kind) {
  case Kind::ReminderIndex:
    return indexLine(*index);
  case Kind::ReminderDate: {
    const Interval* interval = columns.reminderIntervals.find(*index);
    return absoluteDateLine(*fireDate, interval && isRepeatingReminder(*interval), calendar);
  }
  case Kind::ReminderCountdown:
    return countdownLine(*fireDate, m_input.now, calendar);
  case Kind::ReminderLast: {
    const Date* fired = columns.reminderDateTimeFired.find(*index);
    return fired ? lastLine(*fired, m_input.now, calendar) : QString();
  }
  case Kind::ReminderTitle: {
    const QString* description = columns.reminderDescriptions.find(*index);
    return description ? plainTitle(*description, truncation()) : QString();
  }
  default:
    return {};
  }
}

QString StatusMenu::toolTip(const MenuEntry& entry, const Calendar& calendar) const {
  if (entry.kind != Kind::ReminderTitle)
    return {};
  const auto index = indexOf(entry);
  const Date* created =
      index ? m_input.queue->columns().reminderDateTimeCreated.find(*index) : nullptr;
  return created ? titleToolTip(*created, calendar) : QString();
}

const RichText* StatusMenu::richTitle(const MenuEntry& entry) const {
  if (entry.kind != Kind::ReminderTitle || !m_options.showRichText || !m_input.richTitles)
    return nullptr;
  const auto index = indexOf(entry);
  const QByteArray* archive = index ? m_input.queue->columns().reminderRTFs.find(*index) : nullptr;
  return archive ? m_input.richTitles->title(entry.reminderUUID, *archive, truncation()) : nullptr;
}

Truncation StatusMenu::truncation() const {
  return m_options.truncateReminders ? Truncation::On : Truncation::Off;
}

MenuItem StatusMenu::item(const MenuEntry& entry, const Calendar& calendar) const {
  MenuItem item;
  item.reminderUUID = entry.reminderUUID;
  item.separator = isSeparator(entry);
  if (item.separator)
    return item;
  item.title = title(entry, calendar);
  item.action = action(entry);
  item.tag = tag(entry);
  item.enabled = isEnabled(entry);
  item.checkable = isCheckable(entry);
  item.checked = isChecked(entry);
  item.toolTip = toolTip(entry, calendar);
  if (const RichText* rich = richTitle(entry))
    item.richTitle = *rich;
  const std::vector<MenuEntry> children = submenu(entry);
  item.submenu.reserve(children.size());
  for (const MenuEntry& child : children)
    item.submenu.push_back(this->item(child, calendar));
  return item;
}

std::vector<MenuItem> buildStatusMenu(const MenuInput& input, const Calendar& calendar) {
  const StatusMenu menu(input, calendar);
  std::vector<MenuItem> items;
  items.reserve(menu.entries().size());
  for (const MenuEntry& entry : menu.entries())
    items.push_back(menu.item(entry, calendar));
  return items;
}

} // namespace tockwise
