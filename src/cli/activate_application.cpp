#include "cli/activate_application.h"

#include "app/bus_names.h"
#include "cli/bus_call.h"
#include "cli/waiting.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QThread>
#include <QVariantMap>

#include <cerrno>
#include <csignal>

namespace tockwise {
namespace {

bool isRunning() {
  return QDBusConnection::sessionBus().interface()->isServiceRegistered(busName());
}

// What the desktop gave us so that a window may come to the front.
QVariantMap platformData() {
  QVariantMap data;
  const auto hand = [&](const char* variable, const QString& key) {
    if (const QString value = qEnvironmentVariable(variable); !value.isEmpty())
      data.insert(key, value);
  };
  hand("DESKTOP_STARTUP_ID", QStringLiteral("desktop-startup-id"));
  hand("XDG_ACTIVATION_TOKEN", QStringLiteral("activation-token"));
  return data;
}

enum class Start { ByBus, No };

Result<QDBusMessage> askFor(const QString& action, Start start) {
  QDBusMessage message = QDBusMessage::createMethodCall(
      busName(), busPath(), QStringLiteral("org.freedesktop.Application"),
      QStringLiteral("ActivateAction"));
  message.setArguments({action, QVariantList(), platformData()});
  message.setAutoStartService(start == Start::ByBus);
  return callAndWait(message);
}

Result<void> startOurselves() {
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
      qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    return Error{Error::Kind::Unavailable,
                 QStringLiteral("there is no display to start the application on")};
  }
  QProcess application;
  application.setProgram(QCoreApplication::applicationFilePath());
  application.setWorkingDirectory(QDir::homePath());
  // Whoever reads what the command prints waits until nobody can write there any more.
  application.setStandardInputFile(QProcess::nullDevice());
  application.setStandardOutputFile(QProcess::nullDevice());
  application.setStandardErrorFile(QProcess::nullDevice());
  qint64 process = 0;
  if (!application.startDetached(&process))
    return Error{Error::Kind::Unavailable, QStringLiteral("the application could not be started")};
  QElapsedTimer waited;
  waited.start();
  while (!isRunning()) {
    const bool hasEnded = ::kill(pid_t(process), 0) != 0 && errno == ESRCH;
    if (hasEnded || waited.elapsed() > kPatience)
      return Error{Error::Kind::Unavailable, QStringLiteral("the application did not start")};
    QThread::msleep(kPause);
  }
  return {};
}

// The bus knows no such service, or could not start it.
bool isAbsence(const QString& errorName) {
  return errorName == u"org.freedesktop.DBus.Error.ServiceUnknown" ||
         errorName == u"org.freedesktop.DBus.Error.NameHasNoOwner" ||
         errorName == u"org.freedesktop.DBus.Error.TimedOut" ||
         errorName.startsWith(u"org.freedesktop.DBus.Error.Spawn");
}

} // namespace

Result<void> activateApplication(const QString& action) {
  if (!QDBusConnection::sessionBus().isConnected()) {
    return Error{Error::Kind::Unavailable,
                 QStringLiteral("there is no session bus to reach the application on")};
  }
  QElapsedTimer waited;
  waited.start();
  Start start = Start::ByBus;
  for (;;) {
    const auto answer = askFor(action, isRunning() ? Start::No : start);
    if (!answer)
      return answer.error();
    if (answer->type() != QDBusMessage::ErrorMessage)
      return {};
    if (waited.elapsed() > kPatience)
      return Error{Error::Kind::Busy, answer->errorMessage()};
    if (isAbsence(answer->errorName()) && !isRunning()) {
      start = Start::No;
      if (auto started = startOurselves(); !started)
        return started;
    }
    QThread::msleep(kPause);
  }
}

} // namespace tockwise
