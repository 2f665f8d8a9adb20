// Questions and messages as message boxes.
//
// A question waits in its own event loop and blocks only the window it belongs to: the box on
// which it was asked, or the active window of ours (an editor, say). Alert windows are never
// blocked, so an alert that opens while a question is open can be read, snoozed and dismissed.
// Nothing in the program may be application-modal, or this would not hold.
#pragma once

#include "ports/prompter.h"

#include <QMessageBox>
#include <QPointer>

#include <vector>

namespace tockwise {

/// Main thread. Texts are shown as they are written, never interpreted as markup. The boxes are
/// named "questionBox" and "messageBox", their buttons "questionButton0", "questionButton1", …
class MessagePrompter final : public Prompter {
 public:
  MessagePrompter() = default;
  ~MessagePrompter() override;
  MessagePrompter(const MessagePrompter&) = delete;
  MessagePrompter& operator=(const MessagePrompter&) = delete;

  /// The index of the pressed button; the escape button's when the box goes away unanswered
  /// (the program ends, or the window it belongs to is closed).
  int ask(const Question& question) override;
  void tell(const QString& title, const QString& message) override;
  void beep() override;

 private:
  QWidget* ownerOfQuestion() const;

  std::vector<QPointer<QMessageBox>> m_questions; // the open ones, newest last
  std::vector<QPointer<QMessageBox>> m_messages;
};

} // namespace tockwise
