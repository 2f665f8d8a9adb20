#include "platform/logind_power_events.h"

#include "base/log.h"

#include <QDBusMessage>
#include <QDBusPendingReply>

namespace tockwise {
namespace {

const QString kLogind = QStringLiteral("org.freedesktop.login1");
const QString kLogindPath = QStringLiteral("/org/freedesktop/login1");
const QString kLogindManager = QStringLiteral("org.freedesktop.login1.Manager");

bool isAbsence(QDBusError::ErrorType type) {
  switch (type) {
  case QDBusError::ServiceUnknown:
  case QDBusError::NoReply:
  case QDBusError::Disconnected:
  case QDBusError::NoServer:
  case QDBusError::TimedOut:
  case QDBusError::UnknownObject:
  case QDBusError::UnknownInterface:
    return true;
  default:
    return false;
  }
}

} // namespace

LogindPowerEvents::LogindPowerEvents(const QDBusConnection& bus, QObject* parent)
    : PowerEvents(parent), m_bus(bus) {
  if (!m_bus.isConnected())
    return;
  m_watcher.setConnection(m_bus);
  m_watcher.addWatchedService(kLogind);
  m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { takeInhibitor(); });
  connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { logindWent(); });
  // Any program may send a signal of that name; only logind's counts.
  m_bus.connect(kLogind, kLogindPath, kLogindManager, QStringLiteral("PrepareForSleep"), this,
                SLOT(prepareForSleep(bool)));
  takeInhibitor();
}

LogindPowerEvents::~LogindPowerEvents() = default;

void LogindPowerEvents::takeInhibitor() {
  QDBusMessage call = QDBusMessage::createMethodCall(kLogind, kLogindPath, kLogindManager,
                                                     QStringLiteral("Inhibit"));
  call << QStringLiteral("sleep") << QStringLiteral("Tockwise")
       << QStringLiteral("Reminders are saved before the machine sleeps")
       << QStringLiteral("delay");
  m_pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
  connect(m_pending, &QDBusPendingCallWatcher::finished, this,
          &LogindPowerEvents::inhibitorAnswered);
}

void LogindPowerEvents::releaseInhibitor() {
  m_inhibitor = QDBusUnixFileDescriptor();
}

void LogindPowerEvents::inhibitorAnswered(QDBusPendingCallWatcher* call) {
  call->deleteLater();
  if (call != m_pending)
    return;
  m_pending = nullptr;
  const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *call;
  m_available = !reply.isError() || !isAbsence(reply.error().type());
  if (reply.isError()) {
    if (m_available && !m_refusalReported)
      logLine(QStringLiteral("Error: %1").arg(reply.error().message()));
    m_refusalReported = m_refusalReported || m_available;
    return;
  }
  if (!m_sleeping) // too late to hold this sleep back; the next wake asks again
    m_inhibitor = reply.value();
}

void LogindPowerEvents::prepareForSleep(bool sleeping) {
  if (sleeping == m_sleeping)
    return;
  m_available = true;
  m_sleeping = sleeping;
  if (sleeping) {
    Q_EMIT willSleep();
    releaseInhibitor();
  } else {
    takeInhibitor();
    Q_EMIT didWake();
  }
}

void LogindPowerEvents::logindWent() {
  m_pending = nullptr;
  m_available = false;
  releaseInhibitor();
  if (m_sleeping) {
    // Nobody will tell of the wake; whoever stopped for the sleep has to go on.
    m_sleeping = false;
    Q_EMIT didWake();
  }
}

} // namespace tockwise
