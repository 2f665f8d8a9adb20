#include "platform/hotkeys/bus_hot_keys.h"

#include "platform/hotkeys/kde_shortcuts.h"
#include "platform/hotkeys/plasma.h"
#include "platform/hotkeys/portal_shortcuts.h"

#include <utility>

namespace tockwise {

BusHotKeys::BusHotKeys(const QDBusConnection& bus) : m_bus(bus) {
  if (!m_bus.isConnected())
    return;
  m_watcher.setConnection(m_bus);
  m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString& service, const QString& before, const QString& now) {
            if (!before.isEmpty())
              serviceWent(service);
            if (!now.isEmpty())
              serviceCame();
          });
  // Plasma's portal gives no keys in old releases, and asks about them in new ones.
  if (isOnPlasma())
    add(std::make_unique<KdeShortcuts>(m_bus));
  add(std::make_unique<PortalShortcuts>(m_bus));
  if (!isOnPlasma())
    add(std::make_unique<KdeShortcuts>(m_bus));
}

BusHotKeys::~BusHotKeys() = default;

void BusHotKeys::add(std::unique_ptr<BusShortcuts> shortcuts) {
  const size_t position = m_services.size();
  connect(shortcuts.get(), &BusShortcuts::bound, this, &BusHotKeys::setStates);
  connect(shortcuts.get(), &BusShortcuts::failed, this,
          [this, position](const QString& reason) { serviceFailed(position, reason); });
  connect(shortcuts.get(), &BusShortcuts::pressed, this, &BusHotKeys::pressed);
  m_watcher.addWatchedService(shortcuts->service());
  m_services.push_back(std::move(shortcuts));
}

bool BusHotKeys::isAvailable() const {
  return m_bus.isConnected() && m_states != allHotKeys(State::NotAvailable);
}

QString BusHotKeys::detail() const {
  if (!m_bus.isConnected())
    return QStringLiteral("there is no session bus");
  if (!isAvailable())
    return m_reasons.join(QStringLiteral(", "));
  return m_services[m_asked]->name();
}

void BusHotKeys::registerHotKeys() {
  if (!std::exchange(m_isWanted, true))
    askFrom(0);
}

void BusHotKeys::unregisterHotKeys() {
  if (!std::exchange(m_isWanted, false))
    return;
  if (m_asked < m_services.size())
    m_services[m_asked]->giveBack();
  setStates(allHotKeys(State::Off));
}

void BusHotKeys::askFrom(size_t position) {
  if (position == 0)
    m_reasons.clear();
  if (position >= m_services.size()) {
    setStates(allHotKeys(State::NotAvailable));
    return;
  }
  m_asked = position;
  setStates(allHotKeys(State::Pending));
  m_services[position]->bind();
}

void BusHotKeys::serviceFailed(size_t position, const QString& reason) {
  m_reasons += reason;
  if (m_isWanted && position == m_asked)
    askFrom(position + 1);
}

// One that is just being asked came because of that.
void BusHotKeys::serviceCame() {
  if (m_isWanted && m_states == allHotKeys(State::NotAvailable))
    askFrom(0);
}

void BusHotKeys::serviceWent(const QString& service) {
  if (!m_isWanted || !isAvailable() || m_services[m_asked]->service() != service)
    return;
  m_services[m_asked]->release();
  serviceFailed(m_asked, QStringLiteral("what gave the keys has ended"));
}

void BusHotKeys::setStates(const HotKeyStates& states) {
  if (std::exchange(m_states, states) != states)
    Q_EMIT stateChanged();
}

} // namespace tockwise
