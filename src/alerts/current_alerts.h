// What the questions of the program need of the open alert windows: they float above other
// windows, so they are hidden while a question is asked and shown again afterwards.
#pragma once

#include <QtGlobal>

namespace tockwise {

/// Main thread.
class CurrentAlerts {
 public:
  virtual ~CurrentAlerts() = default;
  /// Number of open alert windows, hidden ones included.
  virtual qsizetype count() const = 0;
  /// Takes every alert window off the screen; none is closed.
  virtual void hideAllCurrentAlerts() = 0;
  /// Brings every alert window to the front, oldest first, so that the newest ends on top and
  /// has the keyboard.
  virtual void showAllCurrentAlerts() = 0;
};

} // namespace tockwise
