#include "alerts/screen_places.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <QWidget>

namespace tockwise {

QScreen* screenWithPointer() {
  QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
  return screen ? screen : QGuiApplication::primaryScreen();
}

QList<QRect> visibleDialogs(const std::function<bool(const QWidget&)>& isLeftOut) {
  QList<QRect> result;
  const QWidgetList windows = QApplication::topLevelWidgets();
  for (const QWidget* window : windows) {
    if (window->isVisible() && window->windowType() == Qt::Dialog && !isLeftOut(*window))
      result += window->frameGeometry();
  }
  return result;
}

} // namespace tockwise
