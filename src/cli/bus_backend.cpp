#include "cli/bus_backend.h"

#include "app/bus_names.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>

#include <limits>

namespace tockwise {

namespace {

// A question may stay open for as long as its user likes. A bus that ends, or that cuts us off for
// a message larger than it takes, gives no answer at all.
Result<QDBusMessage> waitForAnswer(const QDBusMessage& message) {
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

} // namespace

std::unique_ptr<BusBackend> BusBackend::connect() {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected() || !bus.interface()->isServiceRegistered(busName()))
    return nullptr;
  return std::make_unique<BusBackend>();
}

Result<QVariant> BusBackend::call(const QString& method, const QVariantList& arguments) {
  QDBusMessage message =
      QDBusMessage::createMethodCall(busName(), busPath(), busInterface(), method);
  message.setArguments(arguments);
  message.setAutoStartService(false);
  const auto answer = waitForAnswer(message);
  if (!answer)
    return answer.error();
  const QDBusMessage& reply = *answer;
  if (reply.type() != QDBusMessage::ErrorMessage) {
    const QVariant value = reply.arguments().value(0);
    if (value.canConvert<QDBusArgument>())
      return QVariant(qdbus_cast<QVariantMap>(value));
    return value;
  }
  const bool usage = reply.errorName() == busUsageError();
  if (!usage && reply.errorName() != busFailedError()) // it is ending, or has ended
    return Error{Error::Kind::Busy, reply.errorMessage()};
  return Error{usage ? Error::Kind::Usage : Error::Kind::Refused, reply.errorMessage()};
}

} // namespace tockwise
