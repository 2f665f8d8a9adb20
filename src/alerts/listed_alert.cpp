#include "alerts/listed_alert.h"

namespace tockwise {

ListedAlert::ListedAlert(quint64 number, AlertState state)
    : m_number(number), m_state(std::move(state)) {}

bool ListedAlert::isShown() const {
  return !m_dismissed && !m_state.hidden && m_question == 0;
}

void ListedAlert::hide() {
  m_state.hidden = true;
  if (m_window)
    m_window->putAway();
}

void ListedAlert::hideForQuestion(int question) {
  if (!isShown())
    return;
  m_question = question;
  if (m_window)
    m_window->putAway();
}

void ListedAlert::showAfterQuestion(int question) {
  if (m_question != question)
    return;
  m_question = 0;
  if (m_window && !m_state.hidden)
    m_window->bringBack();
}

void ListedAlert::show() {
  m_state.hidden = false;
  m_question = 0;
  if (m_window)
    m_window->bringBack();
}

void ListedAlert::expose() {
  m_state.hidden = false;
  m_question = 0;
  if (m_window)
    m_window->expose();
}

void ListedAlert::dismiss() {
  m_dismissed = true;
  if (m_window)
    m_window->dismiss();
}

} // namespace tockwise
