// The names of the D-Bus interface; docs/dbus.md describes it.
#pragma once

#include <QString>

namespace tockwise {

inline QString busName() {
  return QStringLiteral("com.quillstone.Tockwise");
}
inline QString busPath() {
  return QStringLiteral("/com/quillstone/Tockwise");
}
inline QString busInterface() {
  return QStringLiteral("com.quillstone.Tockwise1");
}
/// The words of a request are wrong.
inline QString busUsageError() {
  return QStringLiteral("com.quillstone.Tockwise1.Error.Usage");
}
/// The request was understood and could not be done.
inline QString busFailedError() {
  return QStringLiteral("com.quillstone.Tockwise1.Error.Failed");
}

} // namespace tockwise
