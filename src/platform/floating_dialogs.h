// Dialogs that float on tiling desktops of Wayland.
#pragma once

#include <QObject>

namespace tockwise {

/// While it lives, on Wayland, a window of type dialog has one size only until it is on the screen:
/// by this a tiling compositor knows which windows are to float, as it does on X11 by their type.
/// Elsewhere it does nothing. One at a time; main thread.
class FloatingDialogs final : public QObject {
  Q_OBJECT
 public:
  FloatingDialogs();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace tockwise
