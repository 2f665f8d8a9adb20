// Whose KGlobalAccel gives hot keys on Wayland.
#pragma once

#include <QString>
#include <QStringList>

namespace tockwise {

/// The compositor whose keys KGlobalAccel is told of. Where another one runs, KGlobalAccel takes
/// keys and never sees them pressed.
inline constexpr char16_t kKeyCompositor[] = u"org.kde.KWin";

/// Whether this is a session of Plasma, as the session itself says. A sandbox may hide the
/// compositor's name on the bus, but not this.
inline bool isOnPlasma() {
  return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(QStringLiteral("KDE"));
}

} // namespace tockwise
