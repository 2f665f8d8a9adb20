// What the desktop's session manager does about us at the next login.
#pragma once

#include <QGuiApplication>

#include <functional>

namespace tockwise {

/// When the session manager of X11 saves the session, it is told to start this program again, with
/// no words of the session's; or not to, where startsAtLogin() says that something else does: a
/// second start would show the menu of the first. Main thread.
void followSessionSaves(QGuiApplication& application, std::function<bool()> startsAtLogin);

} // namespace tockwise
