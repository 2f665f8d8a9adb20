// The tray application: one instance a session, on the bus, with the Linux implementations of
// the ports.
#pragma once

#include <QStringList>

namespace tockwise {

/// Runs the application until it is quit, or asks the running one to show its menu. documents:
/// absolute paths of reminders documents to open, in their order; with any, the running one is
/// asked to open them instead. Returns the exit status: 1 with a line on stderr when the store
/// cannot be opened. Needs the command line's argc and argv for Qt. Main thread.
int runApplication(int argc, char** argv, const QStringList& documents = {});

} // namespace tockwise
