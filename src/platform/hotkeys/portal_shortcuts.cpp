#include "platform/hotkeys/portal_shortcuts.h"

#include "platform/hotkeys/portal_request.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QVariantMap>

#include <iterator>

namespace tockwise {

/// One shortcut as it goes over the bus: (sa{sv}).
struct PortalShortcut {
  QString identifier;
  QVariantMap options;
};
using PortalShortcutList = QList<PortalShortcut>;

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
  argument.beginStructure();
  argument << shortcut.identifier << shortcut.options;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
  argument.beginStructure();
  argument >> shortcut.identifier >> shortcut.options;
  argument.endStructure();
  return argument;
}

} // namespace tockwise

Q_DECLARE_METATYPE(tockwise::PortalShortcut)
Q_DECLARE_METATYPE(tockwise::PortalShortcutList)

namespace tockwise {
namespace {

const QString kGlobalShortcuts = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString kSessionInterface = QStringLiteral("org.freedesktop.portal.Session");

QDBusMessage portalCall(const QString& interface, const QString& method) {
  return QDBusMessage::createMethodCall(QString::fromUtf16(kPortalService),
                                        QString::fromUtf16(kPortalPath), interface, method);
}

QString text(const QVariant& value) {
  if (value.userType() == qMetaTypeId<QDBusObjectPath>())
    return qvariant_cast<QDBusObjectPath>(value).path();
  return value.toString();
}

PortalShortcutList wantedShortcuts() {
  PortalShortcutList shortcuts;
  for (size_t i = 0; i < std::size(kHotKeys); ++i) {
    const ShortcutName& name = shortcutNames()[i];
    shortcuts.append({QString::fromUtf16(name.identifier),
                      {{QStringLiteral("description"), QString::fromUtf16(name.description)},
                       {QStringLiteral("preferred_trigger"), QString::fromUtf16(name.trigger)}}});
  }
  return shortcuts;
}

} // namespace

PortalShortcuts::PortalShortcuts(const QDBusConnection& bus, QObject* parent)
    : BusShortcuts(parent), m_bus(bus) {
  qDBusRegisterMetaType<PortalShortcut>();
  qDBusRegisterMetaType<PortalShortcutList>();
}

PortalShortcuts::~PortalShortcuts() {
  release();
}

QString PortalShortcuts::name() const {
  return QStringLiteral("GlobalShortcuts portal");
}

QString PortalShortcuts::service() const {
  return QString::fromUtf16(kPortalService);
}

void PortalShortcuts::bind() {
  release();
  m_talk = std::make_unique<QObject>();
  introduceOurselves();
  askForVersion();
}

// Newer portals let a program that is in no sandbox say which one it is. Others refuse.
void PortalShortcuts::introduceOurselves() {
  QDBusMessage call = portalCall(QStringLiteral("org.freedesktop.host.portal.Registry"),
                                 QStringLiteral("Register"));
  call << QStringLiteral("com.quillstone.Tockwise") << QVariantMap();
  m_bus.asyncCall(call);
}

void PortalShortcuts::askForVersion() {
  QDBusMessage call =
      portalCall(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  call << kGlobalShortcuts << QStringLiteral("version");
  auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), m_talk.get());
  connect(watcher, &QDBusPendingCallWatcher::finished, m_talk.get(), [this, watcher] {
    const QDBusPendingReply<QDBusVariant> version = *watcher;
    if (version.isError() || version.value().variant().toUInt() < 1)
      fail(QStringLiteral("it has no GlobalShortcuts portal"));
    else
      createSession();
  });
}

void PortalShortcuts::createSession() {
  const QString token = PortalRequest::newToken();
  const QString sessionToken = PortalRequest::newToken();
  m_session = portalPath(m_bus, QStringLiteral("session"), sessionToken);
  const QString portal = QString::fromUtf16(kPortalPath);
  m_bus.connect(service(), portal, kGlobalShortcuts, QStringLiteral("Activated"), this,
                SLOT(activated(QDBusMessage)));
  m_bus.connect(service(), portal, kGlobalShortcuts, QStringLiteral("ShortcutsChanged"), this,
                SLOT(shortcutsChanged(QDBusMessage)));
  m_bus.connect(service(), m_session, kSessionInterface, QStringLiteral("Closed"), this,
                SLOT(sessionClosed()));
  QDBusMessage call = portalCall(kGlobalShortcuts, QStringLiteral("CreateSession"));
  call << QVariantMap{{QStringLiteral("handle_token"), token},
                      {QStringLiteral("session_handle_token"), sessionToken}};
  new PortalRequest(
      m_bus, call, token,
      [this](const PortalRequest::Answer& answer) {
        if (!answer.isGiven || answer.response != 0) {
          fail(QStringLiteral("its GlobalShortcuts portal does not work"));
          return;
        }
        if (const QString path = text(answer.results.value(QStringLiteral("session_handle")));
            !path.isEmpty())
          m_session = path;
        bindShortcuts();
      },
      m_talk.get());
}

void PortalShortcuts::bindShortcuts() {
  const QString token = PortalRequest::newToken();
  QDBusMessage call = portalCall(kGlobalShortcuts, QStringLiteral("BindShortcuts"));
  call << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(wantedShortcuts())
       << QString() << QVariantMap{{QStringLiteral("handle_token"), token}};
  new PortalRequest(
      m_bus, call, token,
      [this](const PortalRequest::Answer& answer) {
        if (answer.isGiven && answer.response == 0)
          takeFirst(answer.results.value(QStringLiteral("shortcuts")));
        else if (answer.isGiven && answer.response == 1)
          fail(QStringLiteral("its question about the keys was answered with no"));
        else
          fail(QStringLiteral("its GlobalShortcuts portal does not work"));
      },
      m_talk.get());
}

// Some portals say yes, and give nothing.
void PortalShortcuts::takeFirst(const QVariant& shortcuts) {
  if (qdbus_cast<PortalShortcutList>(shortcuts).isEmpty())
    fail(QStringLiteral("its GlobalShortcuts portal gives none"));
  else
    takeShortcuts(shortcuts);
}

// A shortcut without a key is one whose key is taken, or that the user took the key from.
void PortalShortcuts::takeShortcuts(const QVariant& shortcuts) {
  HotKeyStates states = allHotKeys(HotKeys::State::Taken);
  for (const PortalShortcut& shortcut : qdbus_cast<PortalShortcutList>(shortcuts)) {
    const QVariant trigger = shortcut.options.value(QStringLiteral("trigger_description"));
    const int number = shortcutNumber(shortcut.identifier);
    if (number > 0 && (!trigger.isValid() || !trigger.toString().isEmpty()))
      states[size_t(number) - 1] = HotKeys::State::Registered;
  }
  Q_EMIT bound(states);
}

void PortalShortcuts::activated(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  if (m_session.isEmpty() || text(arguments.value(0)) != m_session)
    return;
  const QVariantMap options = qdbus_cast<QVariantMap>(arguments.value(3));
  const QString token = options.value(QStringLiteral("activation_token")).toString();
  if (!token.isEmpty())
    qputenv("XDG_ACTIVATION_TOKEN",
            token.toUtf8()); // with which Qt may bring a window to the front
  if (const int number = shortcutNumber(arguments.value(1).toString()); number > 0)
    Q_EMIT pressed(number);
}

void PortalShortcuts::shortcutsChanged(const QDBusMessage& message) {
  if (!m_session.isEmpty() && text(message.arguments().value(0)) == m_session)
    takeShortcuts(message.arguments().value(1));
}

void PortalShortcuts::sessionClosed() {
  if (!m_session.isEmpty())
    fail(QStringLiteral("its GlobalShortcuts portal took the keys back"));
}

void PortalShortcuts::release() {
  m_talk.reset();
  if (m_session.isEmpty())
    return;
  const QString portal = QString::fromUtf16(kPortalPath);
  m_bus.disconnect(service(), portal, kGlobalShortcuts, QStringLiteral("Activated"), this,
                   SLOT(activated(QDBusMessage)));
  m_bus.disconnect(service(), portal, kGlobalShortcuts, QStringLiteral("ShortcutsChanged"), this,
                   SLOT(shortcutsChanged(QDBusMessage)));
  m_bus.disconnect(service(), m_session, kSessionInterface, QStringLiteral("Closed"), this,
                   SLOT(sessionClosed()));
  QDBusMessage close = QDBusMessage::createMethodCall(service(), m_session, kSessionInterface,
                                                      QStringLiteral("Close"));
  close.setAutoStartService(false);
  m_bus.asyncCall(close);
  m_session.clear();
}

// Whoever called is one of those that wait: they go once it has returned.
void PortalShortcuts::fail(const QString& reason) {
  if (QObject* talk = m_talk.release())
    talk->deleteLater();
  release();
  Q_EMIT failed(reason);
}

} // namespace tockwise
