#include "platform/floating_dialogs.h"

#include <QEvent>
#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

namespace tockwise {
namespace {

/// Belongs to its window, until that is on the screen.
class OneSize final : public QObject {
 public:
  explicit OneSize(QWindow& window)
      : QObject(&window),
        m_window(window),
        m_minimum(window.minimumSize()),
        m_maximum(window.maximumSize()) {
    window.setMinimumSize(window.size());
    window.setMaximumSize(window.size());
    window.installEventFilter(this);
  }

 protected:
  // The window is told to the compositor, with its size, while this event is handled.
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool isOver =
        event->type() == QEvent::Hide || (event->type() == QEvent::Expose && m_window.isExposed());
    if (isOver) {
      m_window.removeEventFilter(this);
      QTimer::singleShot(0, this, &OneSize::end);
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  void end() {
    m_window.setMinimumSize(m_minimum);
    m_window.setMaximumSize(m_maximum);
    delete this;
  }

  QWindow& m_window;
  QSize m_minimum;
  QSize m_maximum;
};

} // namespace

FloatingDialogs::FloatingDialogs() {
  if (QGuiApplication::platformName().startsWith(u"wayland"))
    qGuiApp->installEventFilter(this);
}

bool FloatingDialogs::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show && watched->isWindowType()) {
    auto* window = static_cast<QWindow*>(watched);
    const bool canBeResized = window->minimumSize() != window->maximumSize();
    if (window->type() == Qt::Dialog && !window->transientParent() && canBeResized)
      new OneSize(*window);
  }
  return QObject::eventFilter(watched, event);
}

} // namespace tockwise
