#include "editor/installed_applications.h"

#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>
#include <optional>

namespace tockwise {
namespace {

constexpr qint64 kLongestEntry =
    262144; // bytes; a desktop entry with every language has some 20 kB

/// The plain name of an entry that menus show.
std::optional<QString> shownName(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return std::nullopt;
  QString name;
  bool inEntry = false;
  for (const QByteArray& line : file.read(kLongestEntry).split('\n')) {
    const QByteArray text = line.trimmed();
    if (text.startsWith('[')) {
      inEntry = text == "[Desktop Entry]";
      continue;
    }
    const qsizetype sign = text.indexOf('=');
    if (!inEntry || sign < 0)
      continue;
    const QByteArray key = text.left(sign).trimmed();
    const QByteArray value = text.mid(sign + 1).trimmed();
    const bool leftOut = ((key == "NoDisplay" || key == "Hidden") && value == "true") ||
                         (key == "Type" && value != "Application");
    if (leftOut)
      return std::nullopt;
    if (key == "Name")
      name = QString::fromUtf8(value);
  }
  return name.isEmpty() ? std::nullopt : std::optional(name);
}

} // namespace

QStringList applicationFolders() {
  return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

QStringList installedApplications(const QStringList& folders) {
  QSet<QString> seen; // an entry hides those of the same file name in later folders
  QStringList names;
  for (const QString& folder : folders) {
    QDirIterator entries(folder, {QStringLiteral("*.desktop")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
      const QString path = entries.next();
      const QString identity = path.mid(folder.size());
      if (seen.contains(identity))
        continue;
      seen.insert(identity);
      if (const auto name = shownName(path))
        names += *name;
    }
  }
  std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) < 0;
  });
  names.removeDuplicates();
  return names;
}

} // namespace tockwise
