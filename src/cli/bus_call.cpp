#include "cli/bus_call.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>

namespace tockwise {

// A bus that ends, or that cuts us off for a message larger than it takes, gives no answer at all.
Result<QDBusMessage> callAndWait(const QDBusMessage& message, std::chrono::milliseconds patience) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  QEventLoop loop;
  bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
              QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), &loop,
              SLOT(quit()));
  const QDBusPendingCallWatcher answer(bus.asyncCall(message, int(patience.count())));
  QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
  if (!answer.isFinished() && bus.isConnected())
    loop.exec();
  if (!answer.isFinished())
    return Error{Error::Kind::Busy, QStringLiteral("the session bus has ended")};
  return answer.reply();
}

} // namespace tockwise
