// Modal questions and messages.
#pragma once

#include <QString>
#include <QStringList>

namespace tockwise {

/// A modal question as the rules state it.
struct Question {
  QString title;
  QString message;
  QStringList buttons;   // titles, in the rules' order; one for a message that is only read
  int defaultButton = 0; // index into buttons: what Return presses
  int escapeButton = -1; // what Escape and closing the window press; -1: the last button
  int quitButton = -1;   // after this answer the program ends; -1: after none
};

/// A message that waits until it has been read: its one button is "OK". Any thread.
inline Question messageToRead(const QString& title, const QString& message) {
  return {title, message, {QStringLiteral("OK")}, 0, 0};
}

class Prompter {
 public:
  virtual ~Prompter() = default;

  /// Asks, and returns the index of the pressed button. Runs its own event loop: the tick goes
  /// on, so a caller keeps the reminderUUID, not an index, across the call. Main thread.
  virtual int ask(const Question& question) = 0;

  /// A message beside which the program goes on: shown once, not waited for. Main thread.
  virtual void tell(const QString& title, const QString& message) = 0;

  /// The system's beep.
  virtual void beep() = 0;
};

} // namespace tockwise
