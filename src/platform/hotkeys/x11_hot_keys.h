// Hot keys as key grabs on the X server.
//
// A key is grabbed with every combination of Caps Lock, Num Lock and Scroll Lock, and again when
// layout, keyboard or modifiers change. Of a key that another program has in any combination we
// grab none.
#pragma once

#include "platform/hotkeys/key_repeat.h"
#include "platform/hotkeys/x11_keyboard.h"
#include "ports/hot_keys.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>

#include <optional>

namespace tockwise {

/// Main thread; waits for the X server's answers. It is first asked when something is asked here.
class X11HotKeys final : public HotKeys, private QAbstractNativeEventFilter {
  Q_OBJECT
 public:
  /// connection: the one that Qt reads events from; it must outlive this.
  explicit X11HotKeys(xcb_connection_t* connection);
  ~X11HotKeys() override;

  bool isAvailable() const override { return keyboard().isKnown(); }
  /// Those that were taken are tried again.
  void registerHotKeys() override;
  void unregisterHotKeys() override;
  State state(HotKey key) const override;
  QString detail() const override;

 private:
  using States = std::array<State, 4>;

  X11Keyboard& keyboard() const;
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
  void keyboardEvent(const uint8_t* event);
  void keyEvent(const void* event, bool isPress);
  void followKeyboard();
  bool grab(const std::vector<uint8_t>& codes);
  void ungrab(const std::vector<uint8_t>& codes);
  void grabMissing();
  void ungrabAll();
  void tellChange(const States& before);

  xcb_connection_t* m_connection;
  uint32_t m_root;                               // window
  mutable std::optional<X11Keyboard> m_keyboard; // up to date while hot keys are wanted
  KeyGrabs m_grabs;
  States m_states{State::Off, State::Off, State::Off, State::Off};
  KeyRepeat m_repeat;
  QTimer m_keyboardChanges; // several events tell of one change
  bool m_isWanted = false;
};

} // namespace tockwise
