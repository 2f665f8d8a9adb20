#include "menu/rich_titles.h"

#include "base/log.h"

namespace tockwise {
namespace {

/// Mostly the very same bytes: then there is nothing to compare.
bool sameArchive(const QByteArray& left, const QByteArray& right) {
  return left.size() == right.size() && (left.constData() == right.constData() || left == right);
}

} // namespace

RichTitles::RichTitles(Unarchive unarchive) : m_unarchive(std::move(unarchive)) {}

const RichText* RichTitles::title(const QString& reminderUUID, const QByteArray& archive,
                                  Truncation truncation) {
  if (archive.isEmpty())
    return nullptr;
  auto found = m_entries.find(reminderUUID);
  if (found == m_entries.end() || found->truncation != truncation ||
      !sameArchive(found->archive, archive)) {
    if (m_entries.size() >= kMostEntries)
      m_entries.clear();
    Entry entry{archive, truncation, m_unarchive ? m_unarchive(archive) : std::nullopt};
    if (entry.title && truncation == Truncation::On)
      entry.title = cutRichText(*entry.title, kTitleCharacters);
    if (!entry.title) {
      const size_t hash = qHash(archive);
      if (!m_logged.contains(hash)) {
        m_logged.insert(hash);
        logLine(QStringLiteral("No data to unarchive"));
      }
    }
    found = m_entries.insert(reminderUUID, entry);
  }
  return found->title ? &*found->title : nullptr;
}

} // namespace tockwise
