#include "cli/bus_call.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>

#include <limits>

namespace tockwise {

// A question may stay open for as long as its user likes. A bus that ends, or that cuts us off for
// a message larger than it takes, gives no answer at all.
Result<QDBusMessage> callAndWait(const QDBusMessage& message) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  QEventLoop loop;
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
              QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), &loop,
              SLOT(quit()));
  const QDBusPendingCallWatcher answer(bus.asyncCall(message, std::numeric_limits<int>::max()));
  QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
  if (!answer.isFinished() && bus.isConnected())
    loop.exec();
  if (!answer.isFinished())
    return Error{Error::Kind::Busy, QStringLiteral("the session bus has ended")};
  return answer.reply();
}

} // namespace tockwise
