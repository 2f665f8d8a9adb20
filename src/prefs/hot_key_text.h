// What the user is told of the hot keys.
#pragma once

#include "ports/hot_keys.h"

#include <QString>

#include <array>

namespace tockwise {

struct HotKeyText {
  QString line;    // for a field of one line
  QString toolTip; // several lines: what each key does, and what to do about those that don't work
};

/// states: in the order of kHotKeys; detail: of HotKeys. Any thread.
HotKeyText hotKeyText(const std::array<HotKeys::State, 4>& states, const QString& detail);
/// The same of keys as they are now. Main thread.
HotKeyText hotKeyText(const HotKeys& hotKeys);

/// What the user can bind to a key in the desktop's own settings. Any thread.
QString hotKeyCommand(HotKey key);

/// One line on what pressing a key came to where the program itself received it.
QString hotKeyPressText(HotKey key, HotKeys::State state);

} // namespace tockwise
