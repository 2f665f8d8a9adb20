// Where the letters and the modifiers of the hot keys are on this keyboard, in the layout that is
// active.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

struct xcb_connection_t;
struct xkb_context;
struct xkb_keymap;

namespace tockwise {

/// What has to be grabbed.
struct KeyGrabs {
  std::array<std::vector<uint8_t>, 4> codes; // key codes, in the order of kHotKeys
  uint16_t modifiers = 0;                    // Control and Super
  std::vector<uint16_t> locks;               // every combination of the locks, none included
  friend bool operator==(const KeyGrabs&, const KeyGrabs&) = default;
};

/// The key codes of the X server's modifiers, Shift first.
using ModifierCodes = std::array<std::vector<uint8_t>, 8>;

/// A letter is looked for in that layout (counted from 0), then in the others, and where no layout
/// has it (Russian alone) the key is taken that has it on an American keyboard. Super is the
/// modifier that carries a Super key, else Mod4. Any thread that has the keymap to itself.
KeyGrabs keyGrabs(xkb_keymap* keymap, uint32_t layout, const ModifierCodes& modifiers);

/// The keyboard of an X server. Main thread; each read waits for the server.
class X11Keyboard {
 public:
  /// connection must outlive it.
  explicit X11Keyboard(xcb_connection_t* connection);

  /// Whether the server tells of its keyboard.
  bool isKnown() const { return m_keymap != nullptr; }
  /// The code of the extension's events.
  uint8_t eventCode() const { return m_eventCode; }

  /// Reads it all again: another keyboard, other layouts, other modifiers.
  void read();
  uint32_t layout() const { return m_layout; }
  void setLayout(uint32_t layout) { m_layout = layout; }

  KeyGrabs grabs() const { return keyGrabs(m_keymap.get(), m_layout, m_modifiers); }

 private:
  struct Release {
    void operator()(xkb_context* context) const;
    void operator()(xkb_keymap* keymap) const;
  };

  xcb_connection_t* m_connection;
  std::unique_ptr<xkb_context, Release> m_context;
  std::unique_ptr<xkb_keymap, Release> m_keymap;
  ModifierCodes m_modifiers;
  uint32_t m_layout = 0;
  uint8_t m_eventCode = 0;
};

} // namespace tockwise
