#include "app/display.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace tockwise {
namespace {

QtMessageHandler handlerBefore = nullptr;

bool hasWaylandPlugin() {
  const QStringList folders = QCoreApplication::libraryPaths();
  return std::any_of(folders.begin(), folders.end(), [](const QString& folder) {
    return !QDir(folder + QStringLiteral("/platforms"))
                .entryList({QStringLiteral("libqwayland*")}, QDir::Files)
                .isEmpty();
  });
}

QString reason() {
  const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY");
  if (!wayland.isEmpty() && !hasWaylandPlugin())
    return QStringLiteral("Qt cannot show windows on Wayland: install the package qt6-wayland");
  const QString display = wayland.isEmpty() ? qEnvironmentVariable("DISPLAY") : wayland;
  return display.isEmpty() ? QStringLiteral("Qt cannot show windows here")
                           : QStringLiteral("the display %1 cannot be used").arg(display);
}

void handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type != QtFatalMsg) {
    handlerBefore(type, context, message);
    return;
  }
  std::fprintf(stderr, "tockwise: %s; the command line works without a display (tockwise --help)\n",
               qUtf8Printable(reason()));
  std::_Exit(1); // what is half made cannot be taken down
}

} // namespace

bool hasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") ||
         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

DisplayFailure::DisplayFailure() {
  handlerBefore = qInstallMessageHandler(handle);
}

DisplayFailure::~DisplayFailure() {
  qInstallMessageHandler(handlerBefore);
}

} // namespace tockwise
