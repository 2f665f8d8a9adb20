#include "platform/desktop_notification_centre.h"

#include "base/log.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QTimer>
#include <QVariantMap>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace tockwise {
namespace {

const QString kNotifications = QStringLiteral("org.freedesktop.Notifications");
const QString kNotificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kNotificationsInterface = QStringLiteral("org.freedesktop.Notifications");
const QString kDefaultAction = QStringLiteral("default"); // a click on the notification itself

constexpr int kPatience = 10000; // milliseconds: a service that is started on demand takes a while
constexpr int kServersExpiry = -1;
constexpr double kLongestWait = 86400.0; // seconds

QDBusMessage callOf(const char* method) {
  return QDBusMessage::createMethodCall(kNotifications, kNotificationsPath, kNotificationsInterface,
                                        QString::fromLatin1(method));
}

} // namespace

DesktopNotificationCentre::DesktopNotificationCentre(const Clock& clock, PlaySound playDefaultSound,
                                                     const QDBusConnection& bus, QObject* parent)
    : NotificationCentre(parent),
      m_clock(clock),
      m_playDefaultSound(std::move(playDefaultSound)),
      m_bus(bus) {}

DesktopNotificationCentre::~DesktopNotificationCentre() = default;

bool DesktopNotificationCentre::isAvailable() const {
  if (!m_bus.isConnected())
    return false;
  QDBusConnectionInterface* bus = m_bus.interface();
  return bus->isServiceRegistered(kNotifications) ||
         bus->activatableServiceNames().value().contains(kNotifications);
}

quint64 DesktopNotificationCentre::schedule(const UserNotification& notification) {
  const quint64 number = ++m_lastNumber;
  m_posted[number].notification = notification;
  const double wait = notification.deliveryDate.seconds - m_clock.now().seconds;
  const auto milliseconds =
      std::chrono::milliseconds(qint64(std::ceil(std::clamp(wait, 0.0, kLongestWait) * 1000)));
  QTimer::singleShot(milliseconds, this, [this, number] { deliver(number); });
  return number;
}

/// Not before there is something to show: the start of the program asks nobody.
void DesktopNotificationCentre::watchService() {
  if (std::exchange(m_isWatching, true))
    return;
  m_watcher.setConnection(m_bus);
  m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  m_watcher.addWatchedService(kNotifications);
  connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this,
          [this] { m_failureReported = false; });
  connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
          &DesktopNotificationCentre::serviceWent);
  m_bus.connect(kNotifications, kNotificationsPath, kNotificationsInterface,
                QStringLiteral("ActionInvoked"), this, SLOT(actionInvoked(uint, QString)));
  m_bus.connect(kNotifications, kNotificationsPath, kNotificationsInterface,
                QStringLiteral("NotificationClosed"), this, SLOT(notificationClosed(uint, uint)));
}

void DesktopNotificationCentre::deliver(quint64 number) {
  if (!m_posted.contains(number))
    return;
  if (!m_bus.isConnected()) {
    m_posted.erase(number);
    fail(QStringLiteral("there is no session bus"));
    return;
  }
  watchService();
  if (m_capabilities) {
    notify(number);
    return;
  }
  m_waiting.push_back(number);
  askCapabilities();
}

void DesktopNotificationCentre::askCapabilities() {
  if (std::exchange(m_isAsking, true))
    return;
  auto* call =
      new QDBusPendingCallWatcher(m_bus.asyncCall(callOf("GetCapabilities"), kPatience), this);
  connect(call, &QDBusPendingCallWatcher::finished, this,
          &DesktopNotificationCentre::capabilitiesAnswered);
}

void DesktopNotificationCentre::capabilitiesAnswered(QDBusPendingCallWatcher* call) {
  call->deleteLater();
  m_isAsking = false;
  const std::vector<quint64> waiting = std::exchange(m_waiting, {});
  const QDBusPendingReply<QStringList> reply = *call;
  if (!reply.isError())
    m_capabilities = reply.value();
  else
    fail(reply.error().message());
  for (const quint64 number : waiting) {
    if (reply.isError())
      m_posted.erase(number);
    else
      notify(number);
  }
}

QDBusMessage DesktopNotificationCentre::notifyCall(const UserNotification& notification) const {
  const bool knowsMarkup = m_capabilities->contains(QStringLiteral("body-markup"));
  const bool knowsActions = m_capabilities->contains(QStringLiteral("actions"));
  const QString name = QGuiApplication::desktopFileName();
  QVariantMap hints{{QStringLiteral("desktop-entry"), name},
                    {QStringLiteral("urgency"), QVariant::fromValue(uchar(1))},
                    {QStringLiteral("suppress-sound"), true}};
  QStringList actions;
  if (knowsActions)
    actions = {kDefaultAction, QStringLiteral("Dismiss")};
  QDBusMessage call = callOf("Notify");
  call << QStringLiteral("Tockwise") << uint(0) << name << notification.title
       << (knowsMarkup ? notification.informativeText.toHtmlEscaped()
                       : notification.informativeText)
       << actions << hints << kServersExpiry;
  return call;
}

void DesktopNotificationCentre::notify(quint64 number) {
  const auto posted = m_posted.find(number);
  if (posted == m_posted.end()) // removed while it waited
    return;
  posted->second.isSent = true;
  auto* call = new QDBusPendingCallWatcher(
      m_bus.asyncCall(notifyCall(posted->second.notification), kPatience), this);
  connect(call, &QDBusPendingCallWatcher::finished, this,
          [this, number](QDBusPendingCallWatcher* answered) { notifyAnswered(number, answered); });
}

void DesktopNotificationCentre::notifyAnswered(quint64 number, QDBusPendingCallWatcher* call) {
  call->deleteLater();
  const QDBusPendingReply<uint> reply = *call;
  Posted& posted = m_posted[number];
  if (reply.isError()) {
    m_posted.erase(number);
    fail(reply.error().message());
    return;
  }
  if (posted.isRemoved) {
    m_posted.erase(number);
    close(reply.value());
    return;
  }
  posted.id = reply.value();
  if (posted.notification.defaultSound && m_playDefaultSound)
    m_playDefaultSound();
}

void DesktopNotificationCentre::removeDelivered(quint64 number) {
  const auto posted = m_posted.find(number);
  if (posted == m_posted.end())
    return;
  if (posted->second.isSent && !posted->second.id) {
    posted->second.isRemoved = true;
    return;
  }
  if (posted->second.id)
    close(*posted->second.id);
  m_posted.erase(posted);
}

void DesktopNotificationCentre::close(uint id) {
  QDBusMessage call = callOf("CloseNotification");
  call << id;
  call.setAutoStartService(false);
  m_bus.asyncCall(call, kPatience); // one that is gone already is as good
}

void DesktopNotificationCentre::actionInvoked(uint id, const QString& action) {
  const auto number = numberOf(id);
  if (number && action == kDefaultAction)
    Q_EMIT didActivate(*number);
}

void DesktopNotificationCentre::notificationClosed(uint id, uint) {
  if (const auto number = numberOf(id))
    m_posted.erase(*number);
}

/// Its list went with it, and the next one may know other things.
void DesktopNotificationCentre::serviceWent() {
  m_capabilities.reset();
  std::erase_if(m_posted, [](const auto& entry) { return entry.second.id.has_value(); });
}

std::optional<quint64> DesktopNotificationCentre::numberOf(uint id) const {
  const auto found = std::find_if(m_posted.begin(), m_posted.end(),
                                  [id](const auto& entry) { return entry.second.id == id; });
  return found == m_posted.end() ? std::nullopt : std::optional(found->first);
}

void DesktopNotificationCentre::fail(const QString& reason) {
  if (!std::exchange(m_failureReported, true))
    logLine(QStringLiteral("Cannot show a notification: %1").arg(reason));
}

} // namespace tockwise
