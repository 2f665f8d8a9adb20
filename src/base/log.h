// The system log: Qt's logging, to stderr or the journal.
#pragma once

#include <QLoggingCategory>

namespace tockwise {

/// The one category of the program; lines are texts as the rules give them.
Q_DECLARE_LOGGING_CATEGORY(lcTockwise)

/// Writes one line to the system log. Never pass a secret.
void logLine(const QString& line);

} // namespace tockwise
