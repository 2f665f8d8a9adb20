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
  /// Takes every alert window that is on the screen off it; none is closed. question: 1 for the
  /// first open question, 2 for one that is asked while that is open, and so on.
  virtual void hideForQuestion(int question) = 0;
  /// After the first question: brings every alert window to the front, oldest first, so that the
  /// newest ends on top and has the keyboard. After another one: only those that it hid, so that
  /// the questions that are still open stay uncovered.
  virtual void showAfterQuestion(int question) = 0;
};

} // namespace tockwise
