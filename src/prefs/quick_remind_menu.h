// The list of the editor's quick-time menu, quickRemindMenuArray, and what edits it.
#pragma once

#include "base/result.h"
#include "prefs/save_preferences.h"
#include "store/settings.h"

#include <QStringList>

#include <optional>

namespace tockwise {

/// The list of a fresh store and of the default order. Any thread.
QStringList defaultQuickRemindMenu();

/// The entry that the three fields make, as typed, with its trailing blank; "" when they make none.
/// Any thread.
QString quickRemindEntry(const QString& days, const QString& hours, const QString& minutes);

/// Main thread. Every change reads the list from the settings, writes it back and synchronises.
class QuickRemindMenu {
 public:
  explicit QuickRemindMenu(Settings& settings) : m_settings(settings) {}

  QStringList entries() const;
  /// The row of the new entry; nothing when the fields make none.
  std::optional<qsizetype> addToMenu(const QString& days, const QString& hours,
                                     const QString& minutes);
  /// Each returns why it refused, or nothing. A row that is not there does nothing.
  std::optional<PreferenceAlert> deleteItem(qsizetype row);
  std::optional<PreferenceAlert> moveUp(qsizetype row);
  std::optional<PreferenceAlert> moveDown(qsizetype row);
  /// Takes the entry out and puts it back before the row that is destination now (the number of
  /// entries: the end). Returns its new row; rows that are not there leave all as it is.
  qsizetype move(qsizetype row, qsizetype destination);
  void defaultOrder();

 private:
  Settings& m_settings;
};

} // namespace tockwise
