// The drawn pictures of the program: the four clocks of the status item, and the application's
// own icon.
#pragma once

#include <QIcon>

namespace tockwise {

/// Designs of the status item's icon, numbered as the setting clockoption stores them.
inline constexpr int kFirstClock = 1;
inline constexpr int kLastClock = 4;

/// The icon "clock" (1), "clock2", "clock3" or "clock4" (4), drawn at whatever size is asked for,
/// to be seen on dark and on light panels. number is drawn as a badge when it is not empty; one
/// above 99 as "99+".
QIcon clockIcon(int clockOption, const QString& number = {});

/// The icon of the program's windows.
QIcon applicationIcon();

} // namespace tockwise
