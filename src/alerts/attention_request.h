// Asks for the user's attention to a window that opens without the keyboard, once.
#pragma once

#include <QObject>

class QWidget;

namespace tockwise {

/// Main thread. Belongs to the window.
class AttentionRequest final : public QObject {
  Q_OBJECT
 public:
  /// window is not on the screen yet; its native window is made.
  explicit AttentionRequest(QWidget& window);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget& m_window;
};

} // namespace tockwise
