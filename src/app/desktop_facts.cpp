#include "app/desktop_facts.h"

namespace tockwise {

DesktopFacts desktopFacts(const ReminderStore&, const LoginItems&) {
  return {};
}

} // namespace tockwise
