#include "store/documents/document_location.h"

#include "store/documents/document_file.h"

#include <QDir>
#include <QUrl>

namespace tockwise {
namespace {

QString dotSuffix() {
  return u'.' + QString::fromUtf16(kDocumentSuffix);
}

} // namespace

bool hasDocumentSuffix(const QString& path) {
  return path.endsWith(dotSuffix(), Qt::CaseInsensitive);
}

QString withDocumentSuffix(const QString& path) {
  return hasDocumentSuffix(path) ? path : path + dotSuffix();
}

bool isFileURL(const QString& words) {
  return words.startsWith(u"file:", Qt::CaseInsensitive);
}

std::optional<QString> localPathOf(const QString& url) {
  if (!isFileURL(url))
    return std::nullopt;
  QUrl location(url, QUrl::StrictMode);
  const bool isHere = location.isValid() &&
                      (location.host().isEmpty() || location.host() == u"localhost") &&
                      !location.hasQuery() && !location.hasFragment();
  if (!isHere)
    return std::nullopt;
  location.setHost(QString());
  const QString path = location.toLocalFile();
  if (!path.startsWith(u'/') || path.contains(QChar(u'\0')))
    return std::nullopt;
  return QDir::cleanPath(path);
}

} // namespace tockwise
