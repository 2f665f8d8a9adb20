// One alert of the list: what it is of, whether it is to be seen, and its window once it has one.
#pragma once

#include "alerts/alert_window_controller.h"

namespace tockwise {

/// An alert as it can be opened again.
struct AlertState {
  AlertRequest request;
  AlertLevel level = AlertLevel::ModalPanel;
  bool hidden = false; // by the user; not because a question is open

  friend bool operator==(const AlertState&, const AlertState&) = default;
};

/// Main thread.
class ListedAlert {
 public:
  /// number tells alerts apart for as long as the program runs.
  ListedAlert(quint64 number, AlertState state);

  quint64 number() const { return m_number; }
  const AlertState& state() const { return m_state; }
  const AlertRequest& request() const { return m_state.request; }
  AlertLevel level() const { return m_state.level; }

  /// Null until it was first shown: a window takes long to make, and there may be hundreds.
  AlertWindowController* window() const { return m_window.get(); }
  void setWindow(AlertWindowController* window) { m_window.reset(window); }
  /// Deletes the window at once, where no event loop comes that could do so later.
  void deleteWindow() { delete m_window.release(); }

  /// Whether it is to be seen now.
  bool isShown() const;
  /// Whether it is to be seen and has no window yet.
  bool isWaiting() const { return isShown() && !m_window; }
  bool isDismissed() const { return m_dismissed; }

  /// Takes it off the screen until it is shown.
  void hide();
  /// Takes it off the screen for that question, if it is on it.
  void hideForQuestion(int question);
  /// Undoes hideForQuestion() of that question.
  void showAfterQuestion(int question);
  /// To be seen from now on, in front where it has a window already; not when it was dismissed.
  void show();
  /// As show(), and leaves a window that is on the screen where it is, but in front.
  void expose();
  /// Off the screen for good; the entry stays until its owner drops it.
  void dismiss();

 private:
  /// Windows are closed from within their own buttons' signals, so they are deleted later.
  struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
  };

  quint64 m_number;
  AlertState m_state;
  int m_question = 0; // the one that it is hidden for, or 0
  bool m_dismissed = false;
  std::unique_ptr<AlertWindowController, DeleteLater> m_window;
};

} // namespace tockwise
