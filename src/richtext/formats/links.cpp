#include "richtext/formats/links.h"

#include <QUrl>

namespace tockwise {

bool isSafeLink(const QString& link) {
  const QUrl url(link, QUrl::TolerantMode);
  if (!url.isValid())
    return false;
  const QString scheme = url.scheme(); // in lower case
  if (scheme == u"mailto")
    return !url.path().isEmpty();
  return (scheme == u"http" || scheme == u"https") && !url.host().isEmpty();
}

} // namespace tockwise
