// The actions that a desktop's launchers and key bindings ask for over D-Bus.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace tockwise {

/// The menu operation that an action of org.freedesktop.Application stands for; nothing for one
/// that is not ours. docs/dbus.md lists them.
std::optional<QString> operationOfDesktopAction(QStringView action);

/// Whoever asks may hand on the desktop's leave to come to the front, which the next window then
/// uses. platformData: of org.freedesktop.Application. Main thread.
void takeActivationToken(const QVariantMap& platformData);

} // namespace tockwise
