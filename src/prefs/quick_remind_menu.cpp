#include "prefs/quick_remind_menu.h"

namespace tockwise {

QStringList defaultQuickRemindMenu() {
  return {};
}

QString quickRemindEntry(const QString&, const QString&, const QString&) {
  return {};
}

QStringList QuickRemindMenu::entries() const {
  return m_settings.stringList(QStringLiteral("quickRemindMenuArray"));
}

std::optional<qsizetype> QuickRemindMenu::addToMenu(const QString&, const QString&,
                                                    const QString&) {
  return {};
}

std::optional<PreferenceAlert> QuickRemindMenu::deleteItem(qsizetype) {
  return {};
}

std::optional<PreferenceAlert> QuickRemindMenu::moveUp(qsizetype) {
  return {};
}

std::optional<PreferenceAlert> QuickRemindMenu::moveDown(qsizetype) {
  return {};
}

qsizetype QuickRemindMenu::move(qsizetype row, qsizetype) {
  return row;
}

void QuickRemindMenu::defaultOrder() {}

} // namespace tockwise
