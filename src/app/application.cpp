#include "app/application.h"

#include "app/app_controller.h"
#include "app/bus_names.h"
#include "app/bus_service.h"
#include "menu/ui/clock_icon.h"
#include "platform/canberra_sound_player.h"
#include "platform/logind_power_events.h"
#include "platform/message_prompter.h"
#include "platform/time/timerfd_wake_timer.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QThread>

#include <cstdio>

namespace tockwise {
namespace {

enum class Instance { First, Second, Unknown };

// Objects are registered before the name is taken, so that whoever sees the name finds them.
Instance claimBusName(QObject& root) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected())
    return Instance::Unknown;
  bus.registerObject(busPath(), &root, QDBusConnection::ExportAdaptors);
  const auto reply =
      bus.interface()->registerService(busName(), QDBusConnectionInterface::DontQueueService,
                                       QDBusConnectionInterface::DontAllowReplacement);
  if (!reply.isValid())
    return Instance::Unknown;
  return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Instance::First
                                                                      : Instance::Second;
}

int showRunningOne() {
  const QDBusMessage reply = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
      busName(), busPath(), busInterface(), QStringLiteral("ShowMenu")));
  return reply.type() == QDBusMessage::ErrorMessage ? 1 : 0;
}

bool isRunning() {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  return bus.isConnected() && bus.interface()->isServiceRegistered(busName());
}

int failToStart(const Error& error) {
  const QString reason =
      error.kind == Error::Kind::Busy
          ? QStringLiteral("another Tockwise has your reminders open (in another session?)")
          : error.message;
  std::fprintf(stderr, "tockwise: %s\n", qUtf8Printable(reason));
  MessagePrompter().ask(
      {QStringLiteral("Tockwise cannot start"), reason, {QStringLiteral("OK")}, 0, 0});
  return 1;
}

// A store that is held belongs to a command that is about to finish, or to an application that
// is just starting: then its name appears.
Result<std::unique_ptr<ReminderStore>> openStore(const Clock& clock) {
  constexpr qint64 kPatience = 5000; // ms
  constexpr unsigned long kPause = 10;
  QElapsedTimer waited;
  waited.start();
  for (;;) {
    auto store = ReminderStore::open(PreferencesStore::Paths::ofUser(), clock);
    const bool held = !store && store.error().kind == Error::Kind::Busy;
    if (!held || isRunning() || waited.elapsed() > kPatience)
      return store;
    QThread::msleep(kPause);
  }
}

Ports linuxPorts() {
  return {std::make_unique<MessagePrompter>(), std::make_unique<CanberraSoundPlayer>(),
          std::make_unique<LogindPowerEvents>(), std::make_unique<TimerfdWakeTimer>()};
}

} // namespace

int runApplication(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("tockwise"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tockwise"));
  QApplication::setApplicationVersion(QStringLiteral(TOCKWISE_VERSION));
  QApplication::setDesktopFileName(busName());
  QApplication::setWindowIcon(applicationIcon());
  QApplication::setQuitOnLastWindowClosed(false);

  if (isRunning())
    return showRunningOne();
  const SystemClock clock;
  auto store = openStore(clock);
  if (!store)
    return isRunning() ? showRunningOne() : failToStart(store.error());
  AppController controller(std::move(*store), linuxPorts());
  QObject root;
  new CommandAdaptor(&root, controller);
  new ApplicationAdaptor(&root, controller);
  if (claimBusName(root) == Instance::Second)
    return showRunningOne();
  controller.start();
  return QApplication::exec();
}

} // namespace tockwise
