// The tray's D-Bus interfaces as they describe themselves to whoever asks.
#pragma once

#include <QString>

namespace tockwise {

inline const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
/// com.canonical.dbusmenu
QString menuIntrospection();
/// org.kde.StatusNotifierItem
QString itemIntrospection();

} // namespace tockwise
