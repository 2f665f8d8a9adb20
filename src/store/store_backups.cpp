#include "store/store_backups.h"

#include "base/log.h"
#include "dates/date_text.h"
#include "store/kept_elsewhere.h"
#include "store/store_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tockwise {
namespace {

const QString kBaseName = QStringLiteral("com.quillstone.Tockwise-");
const QString kEnding = QStringLiteral(".plist");

} // namespace

QString fileStamp(Date date) {
  const QString iso = iso8601UTC(date); // "2026-11-21T06:55:00.000000Z"
  return iso.left(10).remove(u'-') + u'-' + iso.mid(11, 8).remove(u':');
}

StoreBackups::StoreBackups(QString folder) : m_folder(std::move(folder)) {}

QStringList StoreBackups::newestFirst() const {
  QStringList paths;
  const QDir folder(m_folder);
  const QStringList names =
      folder.entryList({kBaseName + u'*' + kEnding}, QDir::Files, QDir::Name | QDir::Reversed);
  for (const QString& name : names)
    paths += folder.filePath(name);
  return paths;
}

bool StoreBackups::hasCopyOfDay(Date now) const {
  const QString start = kBaseName + fileStamp(now).left(8);
  for (const QString& path : newestFirst()) {
    if (QFileInfo(path).fileName().startsWith(start))
      return true;
  }
  return false;
}

Result<QString> StoreBackups::keep(const QByteArray& bytes, Date now) {
  if (const auto made = makePrivateFolder(m_folder); !made)
    return made.error();
  const QString stamp = kBaseName + fileStamp(now);
  QString path;
  int number = 0;
  do {
    path = QDir(m_folder).filePath(
        QStringLiteral("%1-%2%3").arg(stamp).arg(number++, 3, 10, QChar(u'0')).arg(kEnding));
  } while (QFileInfo::exists(path));
  if (const auto written = writeAtomically(path, bytes); !written)
    return written.error();
  const QStringList all = newestFirst();
  for (qsizetype i = kMost; i < all.size(); ++i)
    QFile::remove(all[i]);
  return path;
}

void StoreBackups::removeValues(const std::set<QString>& keys) {
  for (const QString& copy : newestFirst()) {
    const auto bytes = readWholeFile(copy);
    if (!bytes) { // what it holds stays there
      logLine(bytes.error().message);
      continue;
    }
    const QByteArray cleaned = withoutValues(*bytes, keys);
    if (cleaned == *bytes)
      continue;
    if (const auto written = writeAtomically(copy, cleaned); !written)
      logLine(written.error().message);
  }
}

} // namespace tockwise
