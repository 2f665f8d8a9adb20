#include "cli/document_words.h"

#include "cli/command_table.h"
#include "store/documents/document_location.h"

#include <QFileInfo>

namespace tockwise {
namespace {

bool isHelp(const QString& word) {
  return word == u"help" || word.startsWith(u'-');
}

Result<QString> documentPath(const QString& word) {
  QString path = word;
  if (isFileURL(word) && !QFileInfo::exists(word)) {
    const auto local = localPathOf(word);
    if (!local)
      return Error{Error::Kind::Refused, QStringLiteral("%1 is no file on this machine").arg(word)};
    path = *local;
  }
  const QFileInfo file(path);
  if (!file.exists())
    return Error{Error::Kind::NotFound, QStringLiteral("there is no file %1").arg(path)};
  if (file.isDir())
    return Error{Error::Kind::Refused, QStringLiteral("%1 is a folder").arg(path)};
  return file.absoluteFilePath();
}

} // namespace

bool nameDocuments(const QStringList& words) {
  const QString first = words.value(0);
  if (first.isEmpty() || isHelp(first) || findCommand(first))
    return false;
  return isFileURL(first) || hasDocumentSuffix(first) || QFileInfo::exists(first);
}

Result<QStringList> documentPaths(const QStringList& words) {
  QStringList paths;
  for (const QString& word : words) {
    const auto path = documentPath(word);
    if (!path)
      return path.error();
    paths += *path;
  }
  return paths;
}

} // namespace tockwise
