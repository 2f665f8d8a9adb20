// The small drawings beside the panes' names.
#pragma once

#include <QIcon>

namespace tockwise {

enum class PaneIcon {
  Sliders,
  Bell,
  List,
  Pencil,
  Stopwatch,
  Bubble,
  Envelope,
  Calendar,
  Cloud,
  Screen
};

/// Drawn in the colour of the text beside it, at whatever size is asked for. Main thread.
QIcon paneIcon(PaneIcon icon);

} // namespace tockwise
