// Keeps the keys that were meant for another program from an alert that opens under the hands of
// a typist: whenever the window is given the keyboard, keys do nothing until it has rested for a
// moment.
#pragma once

#include <QObject>
#include <QTimer>
#include <QWidget>

namespace tockwise {

/// Main thread.
class KeyGuard final : public QObject {
  Q_OBJECT
 public:
  /// How long the keyboard must have rested.
  static constexpr int kRestMilliseconds = 600;

  /// Watches window and every widget that is in it now; lives as long as window.
  explicit KeyGuard(QWidget* window);

  /// From now on keys are swallowed (also whenever the window becomes the active one), until none
  /// came for kRestMilliseconds or the mouse was pressed in the window.
  void start();
  bool isGuarding() const { return m_rest.isActive(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTimer m_rest;
};

} // namespace tockwise
