// The least that a Qt program in the tray can be: what the measurements of Tockwise are held
// against. With TOCKWISE_BARE_TRAY_REPORT set it prints "embedded" once its icon has a place.
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int kIconSize = 24;
constexpr int kLookEvery = 5; // milliseconds

void reportWhenEmbedded(const QSystemTrayIcon& icon, QTimer& timer) {
  QObject::connect(&timer, &QTimer::timeout, &icon, [&icon, &timer] {
    if (icon.geometry().isEmpty())
      return;
    timer.stop();
    std::puts("embedded");
    std::fflush(stdout);
  });
  timer.start(kLookEvery);
}

} // namespace

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QPixmap pixmap(kIconSize, kIconSize);
  pixmap.fill(Qt::darkGreen);
  QMenu menu;
  QObject::connect(menu.addAction(QStringLiteral("Quit")), &QAction::triggered, &application,
                   &QApplication::quit);
  QSystemTrayIcon icon{QIcon(pixmap)};
  icon.setContextMenu(&menu);
  icon.show();
  QTimer timer;
  if (qEnvironmentVariableIsSet("TOCKWISE_BARE_TRAY_REPORT"))
    reportWhenEmbedded(icon, timer);
  return QApplication::exec();
}
