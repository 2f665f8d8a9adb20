#include "app/hot_key_actions.h"

namespace tockwise {

HotKeyActions::HotKeyActions(HotKeys&, const Settings&, QObject* parent) : QObject(parent) {}

void HotKeyActions::follow() {}

} // namespace tockwise
