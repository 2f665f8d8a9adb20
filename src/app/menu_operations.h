// The operations that menu items name, and what carries them out.
#pragma once

#include "menu/ui/live_menu.h"

#include <QSet>

namespace tockwise {

class AppController;

/// The names of the operations that the application carries out; the menu shows all others
/// disabled.
QSet<QString> availableMenuOperations();

/// Does what activation names; nothing when that is not available. Main thread; some run the event
/// loop for a question.
void performMenuOperation(AppController& controller, const MenuActivation& activation);

} // namespace tockwise
