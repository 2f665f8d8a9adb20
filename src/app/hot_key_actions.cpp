#include "app/hot_key_actions.h"

#include <algorithm>
#include <iterator>

namespace tockwise {
namespace {

// In the order of the numbers, from 1.
constexpr const char16_t* kHotKeyOperations[] = {u"newReminder", u"showAllCurrentAlerts",
                                                 u"hideAllCurrentAlerts", u"printAllCurrentAlerts"};

} // namespace

HotKeyActions::HotKeyActions(HotKeys& hotKeys, const Settings& settings, QObject* parent)
    : QObject(parent), m_hotKeys(hotKeys), m_settings(settings) {
  connect(&m_hotKeys, &HotKeys::pressed, this, &HotKeyActions::perform);
}

void HotKeyActions::start() {
  m_hasStarted = true;
  follow();
}

void HotKeyActions::follow() {
  if (!m_hasStarted)
    return;
  static const QString kUseGlobalHotKeys = QStringLiteral("useGlobalHotKeys");
  const bool isWanted = m_settings.boolean(kUseGlobalHotKeys);
  if (isWanted && (!m_isOn || isAnyMissing()))
    m_hotKeys.registerHotKeys();
  else if (!isWanted && m_isOn)
    m_hotKeys.unregisterHotKeys();
  m_isOn = isWanted;
}

bool HotKeyActions::isAnyMissing() const {
  return std::any_of(std::begin(kHotKeys), std::end(kHotKeys), [this](HotKey key) {
    const HotKeys::State state = m_hotKeys.state(key);
    return state == HotKeys::State::Off || state == HotKeys::State::Taken;
  });
}

// A key may have been on its way when the keys were given back.
void HotKeyActions::perform(int number) {
  if (m_isOn && number >= 1 && number <= int(std::size(kHotKeyOperations)))
    Q_EMIT operationChosen(QString::fromUtf16(kHotKeyOperations[number - 1]));
}

} // namespace tockwise
