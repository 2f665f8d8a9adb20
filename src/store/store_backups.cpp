#include "store/store_backups.h"

#include "dates/calendar.h"
#include "store/store_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tockwise {
namespace {

const QString kBaseName = QStringLiteral("com.quillstone.Tockwise-");
const QString kEnding = QStringLiteral(".plist");

QString dayStamp(Date date) {
  return Calendar::current().dateStringWithFormat(date, u"yyyyMMdd");
}

} // namespace

QString localStamp(Date date) {
  return Calendar::current().dateStringWithFormat(date, u"yyyyMMdd-HHmmss");
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
  const QString start = kBaseName + dayStamp(now);
  for (const QString& path : newestFirst()) {
    if (QFileInfo(path).fileName().startsWith(start))
      return true;
  }
  return false;
}

Result<QString> StoreBackups::keep(const QString& file, Date now) {
  const auto bytes = readWholeFile(file);
  if (!bytes)
    return bytes.error();
  if (const auto made = makePrivateFolder(m_folder); !made)
    return made.error();
  const QString stamp = kBaseName + localStamp(now);
  QString path = QDir(m_folder).filePath(stamp + kEnding);
  for (int i = 1; QFileInfo::exists(path); ++i)
    path = QDir(m_folder).filePath(
        QStringLiteral("%1-%2%3").arg(stamp).arg(i, 3, 10, QChar(u'0')).arg(kEnding));
  if (const auto written = writeAtomically(path, *bytes); !written)
    return written.error();
  const QStringList all = newestFirst();
  for (qsizetype i = kMost; i < all.size(); ++i)
    QFile::remove(all[i]);
  return path;
}

} // namespace tockwise
