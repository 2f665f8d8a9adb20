// Controls as a test names them.
#pragma once

#include <QObject>

namespace tockwise {

/// The child of that kind and name, however deep; a test whose window has none ends.
template <typename Child> Child* namedChild(const QObject& parent, const char* name) {
  auto* found = parent.findChild<Child*>(QString::fromLatin1(name));
  if (!found)
    qFatal("there is no %s", name);
  return found;
}

} // namespace tockwise
