// Looks at what the desktop offers, without starting anything.
#pragma once

#include "ports/secret_store.h"

#include <QString>

namespace tockwise {

/// A service of the session bus as it was found.
struct ServiceFound {
  bool running = false;
  bool startable = false; // the bus starts it when it is asked
  QString name;           // what the running one calls itself, with its version
};

// Each waits for its answer, half a second at most, so that a service that hangs is reported as
// missing. Main thread.

bool sessionBusAnswers();
/// Which kind of tray is there: "StatusNotifierItem", "XEmbed" or "".
QString trayKind();
ServiceFound notificationService();
/// Whether passwords can be kept; a locked store is found out when it is used.
SecretStore::State secretService();
/// What would give a program hot keys ("X11", "GlobalShortcuts portal", "KGlobalAccel"), or "".
QString hotKeyProvider();
/// Why no sound can be played, one sentence, or "".
QString soundProblem();

} // namespace tockwise
