// The applications that the desktop's menus offer.
#pragma once

#include <QStringList>

namespace tockwise {

/// The folders that hold desktop entries, the user's own first.
QStringList applicationFolders();

/// The names of the applications that have a desktop entry in one of the folders, sorted, without
/// those that menus leave out. Reads every entry: for a moment at which the user looks at them.
QStringList installedApplications(const QStringList& folders);

} // namespace tockwise
