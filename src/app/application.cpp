#include "app/application.h"

#include "alerts/alert_sounds.h"
#include "app/app_controller.h"
#include "app/bus_names.h"
#include "app/bus_service.h"
#include "app/display.h"
#include "app/old_text_conversion.h"
#include "app/placeholder_color.h"
#include "base/log.h"
#include "menu/ui/clock_icon.h"
#include "platform/autostart_login_items.h"
#include "platform/canberra_sound_player.h"
#include "platform/clipboard_pasteboard.h"
#include "platform/desktop_notification_centre.h"
#include "platform/desktop_workspace.h"
#include "platform/floating_dialogs.h"
#include "platform/hotkeys/desktop_hot_keys.h"
#include "platform/logind_power_events.h"
#include "platform/message_prompter.h"
#include "platform/process_script_host.h"
#include "platform/secrets/keychain_secret_store.h"
#include "platform/session_restart.h"
#include "platform/termination_signals.h"
#include "platform/time/timerfd_wake_timer.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <cstdio>
#include <optional>

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

// False when it went away meanwhile.
bool callRunningOne(const QString& interface, const QString& method,
                    const QVariantList& arguments = {}) {
  QDBusMessage message = QDBusMessage::createMethodCall(busName(), busPath(), interface, method);
  message.setArguments(arguments);
  message.setAutoStartService(false);
  return QDBusConnection::sessionBus().call(message).type() != QDBusMessage::ErrorMessage;
}

// Hands the documents to the running application, or lets it show its menu when there are none.
bool passOn(const QStringList& documents) {
  if (documents.isEmpty())
    return callRunningOne(busInterface(), QStringLiteral("ShowMenu"));
  QStringList urls;
  for (const QString& path : documents)
    urls += QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
  return callRunningOne(QStringLiteral("org.freedesktop.Application"), QStringLiteral("Open"),
                        {urls, QVariantMap()});
}

// Whoever asks from now on finds nobody, waits for the store, and has it to itself.
void leaveBus() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected())
    return;
  bus.interface()->unregisterService(busName());
  bus.unregisterObject(busPath());
}

// Commands, launchers and panels find the controller behind the root, until the program ends.
void offerOnBus(QObject& root, AppController& controller) {
  new CommandAdaptor(&root, controller);
  new ApplicationAdaptor(&root, controller);
  if (claimBusName(root) == Instance::Second) // the holder of the store is us, so this is strange
    logLine(QStringLiteral("another program has the name %1").arg(busName()));
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, &root, leaveBus);
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
  QApplication::setWindowIcon(applicationIcon());
  MessagePrompter().ask(
      {QStringLiteral("Tockwise cannot start"), reason, {QStringLiteral("OK")}, 0, 0});
  return 1;
}

// The store, or nothing when another application took on what we were started for. A store that is
// held belongs to a command that is about to finish, or to an application that is just starting
// or ending: its name appears, or the store is free.
std::optional<Result<std::unique_ptr<ReminderStore>>> openStore(const Clock& clock,
                                                                const QStringList& documents) {
  constexpr qint64 kPatience = 5000; // ms
  constexpr unsigned long kPause = 10;
  QElapsedTimer waited;
  waited.start();
  for (;;) {
    if (isRunning() && passOn(documents))
      return std::nullopt;
    auto store = ReminderStore::open(PreferencesStore::Paths::ofUser(), clock, oldTextConversion());
    const bool held = !store && store.error().kind == Error::Kind::Busy;
    if (!held || waited.elapsed() > kPatience)
      return store;
    QThread::msleep(kPause);
  }
}

// The player outlives who calls it.
std::function<void()> playingNotificationSound(SoundPlayer& player) {
  return [&player] {
    const QString path =
        AlertSounds::pathIn(AlertSounds::standardFolders(), QString::fromUtf16(kFallbackSound));
    if (!path.isEmpty())
      player.play(path);
  };
}

Ports linuxPorts(const Clock& clock) {
  auto soundPlayer = std::make_unique<CanberraSoundPlayer>();
  auto notificationCentre =
      std::make_unique<DesktopNotificationCentre>(clock, playingNotificationSound(*soundPlayer));
  return {std::make_unique<MessagePrompter>(),
          std::move(soundPlayer),
          std::make_unique<LogindPowerEvents>(),
          std::make_unique<TimerfdWakeTimer>(),
          std::make_unique<DesktopWorkspace>(),
          std::make_unique<ProcessScriptHost>(clock),
          std::make_unique<ClipboardPasteboard>(),
          desktopHotKeys(),
          std::make_unique<AutostartLoginItems>(AutostartLoginItems::ofUser()),
          std::move(notificationCentre),
          std::make_unique<KeychainSecretStore>()};
}

int failWithoutDisplay() {
  std::fputs("tockwise: there is no display to show anything on; the command line works without "
             "one (tockwise --help)\n",
             stderr);
  return 1;
}

void introduceProgram() {
  QApplication::setApplicationName(QStringLiteral("tockwise"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tockwise"));
  QApplication::setApplicationVersion(QStringLiteral(TOCKWISE_VERSION));
  QApplication::setDesktopFileName(busName());
  QApplication::setQuitOnLastWindowClosed(false);
}

// Each asks, in an event loop of its own: the next one waits for its answer.
void openLater(AppController& controller, const QStringList& documents) {
  QTimer::singleShot(0, &controller, [&controller, documents] {
    for (const QString& path : documents)
      controller.documents().openFile(path);
  });
}

} // namespace

int runApplication(int argc, char** argv, const QStringList& documents) {
  if (!hasDisplay())
    return failWithoutDisplay();
  auto failure = std::make_optional<DisplayFailure>();
  QApplication application(argc, argv);
  failure.reset();
  introduceProgram();
  const PlaceholderColor placeholderColor;
  const FloatingDialogs floatingDialogs;
  followSessionSaves(application, [] { return AutostartLoginItems::ofUser().isPresent(); });
  const SystemClock clock;
  auto opened = openStore(clock, documents);
  if (!opened)
    return 0;
  if (!*opened)
    return failToStart(opened->error());
  AppController controller(std::move(**opened), linuxPorts(clock));
  QObject root;
  offerOnBus(root, controller);
  const TerminationSignals termination;
  QObject::connect(&termination, &TerminationSignals::received, &controller,
                   &AppController::endWithSession);
  controller.start();
  openLater(controller, documents);
  return QApplication::exec();
}

} // namespace tockwise
