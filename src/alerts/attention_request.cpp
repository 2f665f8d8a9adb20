#include "alerts/attention_request.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace tockwise {

AttentionRequest::AttentionRequest(QWidget& window) : QObject(&window), m_window(window) {
  window.winId(); // makes the native window, so that its first exposure can be seen
  window.windowHandle()->installEventFilter(this);
}

bool AttentionRequest::eventFilter(QObject* watched, QEvent* event) {
  // Attention can be asked for once the window manager knows the window.
  const auto* handle = qobject_cast<QWindow*>(watched);
  if (event->type() == QEvent::Expose && handle && handle->isExposed()) {
    watched->removeEventFilter(this);
    QApplication::alert(&m_window);
  }
  return QObject::eventFilter(watched, event);
}

} // namespace tockwise
