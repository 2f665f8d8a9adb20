#include "alerts/alert_hiding_prompter.h"

#include <utility>

namespace tockwise {

AlertHidingPrompter::AlertHidingPrompter(std::unique_ptr<Prompter> prompter)
    : m_prompter(std::move(prompter)) {}

AlertHidingPrompter::~AlertHidingPrompter() = default;

AlertHidingPrompter& AlertHidingPrompter::putAround(std::unique_ptr<Prompter>& prompter) {
  auto around = std::make_unique<AlertHidingPrompter>(std::move(prompter));
  AlertHidingPrompter& result = *around;
  prompter = std::move(around);
  return result;
}

int AlertHidingPrompter::ask(const Question& question) {
  dialogOpens();
  const int answer = m_prompter->ask(question);
  if (question.quitButton >= 0 && answer == question.quitButton)
    leaveHidden();
  dialogCloses();
  return answer;
}

void AlertHidingPrompter::tell(const QString& title, const QString& message) {
  m_prompter->tell(title, message);
}

void AlertHidingPrompter::beep() {
  m_prompter->beep();
}

void AlertHidingPrompter::goOn() {
  if (std::exchange(m_leavesHidden, false) && m_open == 0 && m_alerts)
    m_alerts->showAfterQuestion(1);
}

void AlertHidingPrompter::dialogOpens() {
  m_leavesHidden = false; // whoever asks once more goes on
  ++m_open;
  if (m_alerts)
    m_alerts->hideForQuestion(m_open);
}

void AlertHidingPrompter::dialogCloses() {
  const int question = m_open--;
  if (m_alerts && !m_leavesHidden)
    m_alerts->showAfterQuestion(question);
}

} // namespace tockwise
