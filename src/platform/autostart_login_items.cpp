#include "platform/autostart_login_items.h"

namespace tockwise {

AutostartLoginItems::AutostartLoginItems(QString folder, QString program)
    : m_folder(std::move(folder)), m_program(std::move(program)) {}

AutostartLoginItems AutostartLoginItems::ofUser() {
  return {QString(), QString()};
}

bool AutostartLoginItems::isPresent() const {
  return false;
}

Result<void> AutostartLoginItems::add() {
  return {};
}

Result<void> AutostartLoginItems::remove() {
  return {};
}

} // namespace tockwise
