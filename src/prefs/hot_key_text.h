// What the user is told of the hot keys.
#pragma once

#include "ports/hot_keys.h"

#include <QString>

namespace tockwise {

struct HotKeyText {
  QString line;    // for a field of one line
  QString toolTip; // several lines: what each key does, and what to do about those that don't work
};

/// detail: of HotKeys. Any thread.
HotKeyText hotKeyText(const HotKeyStates& states, const QString& detail);
/// The same of keys as they are now. Main thread.
HotKeyText hotKeyText(const HotKeys& hotKeys);

/// How it is with one key, in a few words; of one that does not work, what can be bound to a key of
/// the user's own in its place. Any thread.
QString hotKeyStateText(HotKey key, HotKeys::State state);

/// One line on what pressing a key came to where the program itself received it. Any thread.
QString hotKeyPressText(HotKey key, HotKeys::State state);

} // namespace tockwise
