#include "platform/hotkeys/portal_request.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QRandomGenerator>

#include <utility>

namespace tockwise {

QString portalPath(const QDBusConnection& bus, const QString& kind, const QString& token) {
  QString sender = bus.baseService().mid(1); // without its colon
  sender.replace(u'.', u'_');
  return QStringLiteral("%1/%2/%3/%4").arg(QStringView(kPortalPath)).arg(kind, sender, token);
}

QString PortalRequest::newToken() {
  static int count = 0;
  return QStringLiteral("tockwise%1_%2").arg(++count).arg(QRandomGenerator::global()->generate());
}

PortalRequest::PortalRequest(const QDBusConnection& bus, const QDBusMessage& call,
                             const QString& token, Done done, QObject* parent)
    : QObject(parent), m_bus(bus), m_done(std::move(done)) {
  // Before the call: the answer may be there before its path.
  const QString expected = portalPath(m_bus, QStringLiteral("request"), token);
  listen(expected);
  auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, expected, watcher] {
    const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
    if (reply.isError())
      finish({false, 0, {}, reply.error().message()});
    else if (reply.value().path() != expected) // portals of old name their own
      listen(reply.value().path());
  });
}

void PortalRequest::listen(const QString& path) {
  m_bus.connect(QString::fromUtf16(kPortalService), path,
                QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"), this,
                SLOT(responded(QDBusMessage)));
}

void PortalRequest::responded(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  finish({true, arguments.value(0).toUInt(), qdbus_cast<QVariantMap>(arguments.value(1)), {}});
}

void PortalRequest::finish(const Answer& answer) {
  const Done done = std::exchange(m_done, nullptr);
  deleteLater();
  if (done)
    done(answer); // may delete us
}

} // namespace tockwise
