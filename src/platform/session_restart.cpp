#include "platform/session_restart.h"

#include <QSessionManager>

#include <utility>

namespace tockwise {

void followSessionSaves(QGuiApplication& application, std::function<bool()> startsAtLogin) {
  QObject::connect(
      &application, &QGuiApplication::saveStateRequest, &application,
      [startsAtLogin = std::move(startsAtLogin)](QSessionManager& session) {
        session.setRestartCommand({QCoreApplication::applicationFilePath()});
        session.setRestartHint(startsAtLogin() ? QSessionManager::RestartNever
                                               : QSessionManager::RestartIfRunning);
      },
      Qt::DirectConnection);
}

} // namespace tockwise
