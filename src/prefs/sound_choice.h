// Which of the program's sounds the settings choose for alerts.
#pragma once

#include "store/settings.h"

#include <QStringList>

namespace tockwise {

/// The position in sounds, the program's in their order, of the one that alerts play; -1 when it is
/// none of them. What is stored is a name and a position: the name counts, and the position where
/// it leads to that name or where no name is stored. fallback: the name that counts while neither
/// is stored. Main thread, as all here.
qsizetype chosenSound(const Settings& settings, const QStringList& sounds, const QString& fallback);

/// Stores the choice of the sound of that name, which stands at position, and synchronises.
void chooseSound(Settings& settings, const QString& name, qsizetype position);

} // namespace tockwise
