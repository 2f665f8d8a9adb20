#include "alerts/key_guard.h"

#include <QKeyEvent>

namespace tockwise {
namespace {

bool isHeldAnswer(const QKeyEvent& event) {
  return event.isAutoRepeat() && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
                                  event.key() == Qt::Key_Escape);
}

} // namespace

KeyGuard::KeyGuard(QWidget* window) : QObject(window) {
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRestMilliseconds);
  window->installEventFilter(this);
  const QList<QWidget*> inside = window->findChildren<QWidget*>();
  for (QWidget* widget : inside)
    widget->installEventFilter(this);
}

void KeyGuard::start() {
  m_rest.start();
}

bool KeyGuard::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
  case QEvent::WindowActivate:
    start(); // the keyboard may have come from another program just now
    break;
  case QEvent::MouseButtonPress:
    m_rest.stop();
    break;
  case QEvent::ShortcutOverride:
    if (isGuarding()) {
      event->accept(); // else a mnemonic would act before the key press comes here
      return true;
    }
    break;
  case QEvent::KeyPress:
    if (isGuarding()) {
      m_rest.start();
      return true;
    }
    // A key held down since before the window had the keyboard is not an answer either.
    return isHeldAnswer(*static_cast<QKeyEvent*>(event));
  case QEvent::KeyRelease:
    return isGuarding();
  default:
    break;
  }
  return QObject::eventFilter(watched, event);
}

} // namespace tockwise
