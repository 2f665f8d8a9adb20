// Hides the alert windows around every question of the program.
//
// The application puts this around its one Prompter, so that whoever asks hides them, whether or
// not he thought of it.
#pragma once

#include "alerts/current_alerts.h"
#include "ports/prompter.h"

#include <memory>

namespace tockwise {

/// Main thread. An alert that opens while a question is open is not hidden by it. Messages of
/// tell(), beside which the program goes on, hide nothing.
class AlertHidingPrompter final : public Prompter {
 public:
  explicit AlertHidingPrompter(std::unique_ptr<Prompter> prompter);
  ~AlertHidingPrompter() override;

  /// Puts one around *prompter, in its place, and returns it.
  static AlertHidingPrompter& putAround(std::unique_ptr<Prompter>& prompter);
  /// The windows to hide; null (as at first): none. Must outlive the questions.
  void setAlerts(CurrentAlerts* alerts) { m_alerts = alerts; }

  /// Hides the alerts, asks, and shows them again whatever the answer was, unless it was the
  /// question's quitButton: the program ends then, and they stay hidden.
  int ask(const Question& question) override;
  void tell(const QString& title, const QString& message) override;
  void beep() override;

  /// For a modal dialog that is no question (a file panel): as ask() does before and after it.
  /// Calls come in pairs.
  void dialogOpens();
  void dialogCloses();

  /// The program ends: questions that end with it show nothing any more.
  void leaveHidden() { m_leavesHidden = true; }
  /// It does not end after all: what was left hidden is shown, once no question is open any more.
  void goOn();

 private:
  std::unique_ptr<Prompter> m_prompter;
  CurrentAlerts* m_alerts = nullptr;
  int m_open = 0; // questions and dialogs
  bool m_leavesHidden = false;
};

} // namespace tockwise
