// Hot keys where programs can't grab keys themselves: from the first service on the session bus
// that gives them.
#pragma once

#include "platform/hotkeys/bus_shortcuts.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QStringList>

#include <memory>
#include <vector>

namespace tockwise {

/// Main thread. Nobody is asked before registerHotKeys(); a service that comes later, or again, is
/// asked when it comes.
class BusHotKeys final : public HotKeys {
  Q_OBJECT
 public:
  /// bus: the session's.
  explicit BusHotKeys(const QDBusConnection& bus = QDBusConnection::sessionBus());
  ~BusHotKeys() override;

  /// False once every service was asked in vain.
  bool isAvailable() const override;
  void registerHotKeys() override;
  void unregisterHotKeys() override;
  State state(HotKey key) const override { return m_states[size_t(key) - 1]; }
  QString detail() const override;

 private:
  void add(std::unique_ptr<BusShortcuts> shortcuts);
  void askFrom(size_t position);
  void serviceFailed(size_t position, const QString& reason);
  void serviceCame();
  void serviceWent(const QString& service);
  void setStates(const HotKeyStates& states);

  QDBusConnection m_bus;
  QDBusServiceWatcher m_watcher;
  std::vector<std::unique_ptr<BusShortcuts>> m_services; // the best first
  HotKeyStates m_states = allHotKeys(State::Off);
  size_t m_asked = 0; // position of the one that was asked last
  QStringList m_reasons;
  bool m_isWanted = false;
};

} // namespace tockwise
