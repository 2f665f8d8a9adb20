#include "cli/bus_backend.h"

#include "app/bus_names.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace tockwise {

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
  const auto answer = callAndWait(message, m_patience);
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
