#include "prefs/quick_remind_menu.h"

#include "store/reminder_store.h"

namespace tockwise {
namespace {

const QString kKey = QStringLiteral("quickRemindMenuArray");
const QString kCannotMove = QStringLiteral("Cannot Move Item");

QString part(const QString& number, QStringView singular, QStringView plural) {
  if (number.isEmpty() || number == u"0")
    return {};
  return number + (number == u"1" ? singular : plural).toString();
}

bool isRow(qsizetype row, const QStringList& list) {
  return row >= 0 && row < list.size();
}

void write(Settings& settings, const QStringList& list) {
  settings.setValue(kKey, Value(list));
  settings.synchronize();
}

} // namespace

QStringList defaultQuickRemindMenu() {
  return registeredDefaults().at(kKey).strings().value_or(QStringList());
}

QString quickRemindEntry(const QString& days, const QString& hours, const QString& minutes) {
  return part(days, u" Day ", u" Days ") + part(hours, u" Hour ", u" Hours ") +
         part(minutes, u" Minute ", u" Minutes ");
}

QStringList QuickRemindMenu::entries() const {
  return m_settings.stringList(kKey);
}

std::optional<qsizetype> QuickRemindMenu::addToMenu(const QString& days, const QString& hours,
                                                    const QString& minutes) {
  const QString entry = quickRemindEntry(days, hours, minutes);
  if (entry.isEmpty())
    return {};
  QStringList list = entries();
  list += entry;
  write(m_settings, list);
  return list.size() - 1;
}

std::optional<PreferenceAlert> QuickRemindMenu::deleteItem(qsizetype row) {
  QStringList list = entries();
  if (list.size() == 1) {
    return PreferenceAlert{
        QStringLiteral("Cannot Delete Item"),
        QStringLiteral("The Quick Reminder Menu must contain at least one item.")};
  }
  if (!isRow(row, list))
    return {};
  list.removeAt(row);
  write(m_settings, list);
  return {};
}

std::optional<PreferenceAlert> QuickRemindMenu::moveUp(qsizetype row) {
  QStringList list = entries();
  if (!isRow(row, list))
    return {};
  if (row == 0)
    return PreferenceAlert{kCannotMove, QStringLiteral("The selected item is at the top.")};
  list.swapItemsAt(row, row - 1);
  write(m_settings, list);
  return {};
}

std::optional<PreferenceAlert> QuickRemindMenu::moveDown(qsizetype row) {
  QStringList list = entries();
  if (!isRow(row, list))
    return {};
  if (row == list.size() - 1)
    return PreferenceAlert{kCannotMove, QStringLiteral("The selected item is at the bottom.")};
  list.swapItemsAt(row, row + 1);
  write(m_settings, list);
  return {};
}

qsizetype QuickRemindMenu::move(qsizetype row, qsizetype destination) {
  QStringList list = entries();
  const bool stays = destination == row || destination == row + 1;
  if (!isRow(row, list) || destination < 0 || destination > list.size() || stays)
    return row;
  const qsizetype newRow = destination > row ? destination - 1 : destination;
  list.move(row, newRow);
  write(m_settings, list);
  return newRow;
}

void QuickRemindMenu::defaultOrder() {
  write(m_settings, defaultQuickRemindMenu());
}

} // namespace tockwise
