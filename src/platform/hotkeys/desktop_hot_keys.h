// The hot keys of this desktop: X11 key grabs; on Wayland the GlobalShortcuts portal or
// KGlobalAccel where there is one.
#pragma once

#include "ports/hot_keys.h"

#include <memory>

namespace tockwise {

/// Chooses by the platform that Qt runs on. Main thread, after the application object.
std::unique_ptr<HotKeys> desktopHotKeys();

} // namespace tockwise
