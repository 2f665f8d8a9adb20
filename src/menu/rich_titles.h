// Rich titles of reminders: archives are read once, not at every look at the menu.
#pragma once

#include "menu/reminder_texts.h"
#include "menu/rich_text.h"

#include <QHash>
#include <QSet>

#include <functional>

namespace tockwise {

/// Main thread. Archives it keeps share their bytes with the queue.
class RichTitles {
 public:
  /// Reads an archive: its whole text, or nothing when it holds none.
  using Unarchive = std::function<std::optional<RichText>(const QByteArray& archive)>;

  explicit RichTitles(Unarchive unarchive);

  /// The title made of archive, or null when it is empty or cannot be read; the latter is logged
  /// with "No data to unarchive", once per archive. The pointer is valid until the next call.
  const RichText* title(const QString& reminderUUID, const QByteArray& archive,
                        Truncation truncation);

 private:
  struct Entry {
    QByteArray archive;
    Truncation truncation = Truncation::Off;
    std::optional<RichText> title;
  };
  static constexpr qsizetype kMostEntries = 2000;

  Unarchive m_unarchive;
  QHash<QString, Entry> m_entries; // by reminderUUID
  QSet<size_t> m_logged;           // hashes of archives that could not be read
};

} // namespace tockwise
