// System-wide keys that work while another program has the keyboard.
#pragma once

#include <QObject>
#include <QString>

#include <algorithm>
#include <array>
#include <iterator>

namespace tockwise {

/// The numbers of the hot keys: Control and Super together with M, S, H and P.
enum class HotKey { NewReminder = 1, ShowAlerts = 2, HideAlerts = 3, PrintAlerts = 4 };
inline constexpr HotKey kHotKeys[] = {HotKey::NewReminder, HotKey::ShowAlerts, HotKey::HideAlerts,
                                      HotKey::PrintAlerts};
/// The letter on the key, a capital.
constexpr char16_t letterOf(HotKey key) {
  return u"MSHP"[size_t(key) - 1];
}

/// Main thread.
class HotKeys : public QObject {
  Q_OBJECT
 public:
  enum class State {
    Off,         // not registered
    Pending,     // asked for; the desktop has not answered yet
    Registered,  // works
    Taken,       // another program has it
    NotAvailable // this desktop gives programs no hot keys
  };
  using QObject::QObject;

  virtual bool isAvailable() const = 0;
  /// Asks for all four; those that are registered already are left alone. Returns at once.
  virtual void registerHotKeys() = 0;
  /// Gives back all four; nothing when none is registered.
  virtual void unregisterHotKeys() = 0;
  virtual State state(HotKey key) const = 0;
  /// What gives the keys on this desktop ("X11", "GlobalShortcuts portal", "KGlobalAccel"), or why
  /// nothing does.
  virtual QString detail() const = 0;

 Q_SIGNALS:
  /// number: 1 to 4.
  void pressed(int number);
  void stateChanged();
};

/// The states of all four, in the order of kHotKeys.
using HotKeyStates = std::array<HotKeys::State, std::size(kHotKeys)>;

constexpr HotKeyStates allHotKeys(HotKeys::State state) {
  return {state, state, state, state};
}
/// As they are now. Main thread.
inline HotKeyStates statesOf(const HotKeys& hotKeys) {
  HotKeyStates states{};
  std::transform(std::begin(kHotKeys), std::end(kHotKeys), states.begin(),
                 [&](HotKey key) { return hotKeys.state(key); });
  return states;
}

} // namespace tockwise
