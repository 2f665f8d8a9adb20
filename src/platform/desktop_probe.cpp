#include "platform/desktop_probe.h"

#include "platform/canberra_library.h"
#include "platform/hotkeys/plasma.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QStringList>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>

namespace tockwise {
namespace {

constexpr int kProbePatience = 500; // ms

template <typename T> using Allocated = std::unique_ptr<T, decltype(&std::free)>;

QDBusMessage ask(const QString& service, const QString& path, const QString& interface,
                 const QString& method, const QVariantList& arguments = {}) {
  QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
  message.setArguments(arguments);
  message.setAutoStartService(false);
  return QDBusConnection::sessionBus().call(message, QDBus::Block, kProbePatience);
}

QVariant property(const QString& service, const QString& path, const QString& interface,
                  const QString& name) {
  const QDBusMessage reply = ask(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                 QStringLiteral("Get"), {interface, name});
  return reply.arguments().value(0).value<QDBusVariant>().variant();
}

bool runs(const QString& service) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  return bus.isConnected() && bus.interface()->isServiceRegistered(service);
}

bool canBeStarted(const QString& service) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected())
    return false;
  const QDBusReply<QStringList> names = bus.interface()->activatableServiceNames();
  return names.isValid() && names.value().contains(service);
}

bool notifierHost() {
  const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
  return runs(watcher) && property(watcher, QStringLiteral("/StatusNotifierWatcher"), watcher,
                                   QStringLiteral("IsStatusNotifierHostRegistered"))
                              .toBool();
}

// A connection to the X server of DISPLAY, or null.
class XConnection {
 public:
  XConnection() {
    if (!qEnvironmentVariableIsEmpty("DISPLAY"))
      m_connection = xcb_connect(nullptr, &m_screen);
  }
  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;
  ~XConnection() {
    if (m_connection)
      xcb_disconnect(m_connection);
  }
  bool works() const { return m_connection && xcb_connection_has_error(m_connection) == 0; }
  bool hasOwner(const QByteArray& selectionPrefix) const {
    if (!works())
      return false;
    const QByteArray name = selectionPrefix + QByteArray::number(m_screen);
    const Allocated<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(m_connection,
                              xcb_intern_atom(m_connection, 1, uint16_t(name.size()), name.data()),
                              nullptr),
        &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE)
      return false;
    const Allocated<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(m_connection,
                                      xcb_get_selection_owner(m_connection, atom->atom), nullptr),
        &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
  }

 private:
  xcb_connection_t* m_connection = nullptr;
  int m_screen = 0;
};

} // namespace

bool sessionBusAnswers() {
  return QDBusConnection::sessionBus().isConnected();
}

QString trayKind() {
  if (notifierHost())
    return QStringLiteral("StatusNotifierItem");
  return XConnection().hasOwner("_NET_SYSTEM_TRAY_S") ? QStringLiteral("XEmbed") : QString();
}

ServiceFound notificationService() {
  const QString service = QStringLiteral("org.freedesktop.Notifications");
  ServiceFound found{runs(service), canBeStarted(service), QString()};
  if (found.running) {
    const QVariantList words = ask(service, QStringLiteral("/org/freedesktop/Notifications"),
                                   service, QStringLiteral("GetServerInformation"))
                                   .arguments();
    if (words.size() >= 3)
      found.name = words[0].toString() + u' ' + words[2].toString();
  }
  return found;
}

SecretStore::State secretService() {
  static const QStringList services{QStringLiteral("org.freedesktop.secrets"),
                                    QStringLiteral("org.kde.kwalletd5"),
                                    QStringLiteral("org.kde.kwalletd6")};
  for (const QString& service : services) {
    if (runs(service) || canBeStarted(service))
      return SecretStore::State::Available;
  }
  return SecretStore::State::NotAvailable;
}

QString hotKeyProvider() {
  if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
    return XConnection().works() ? QStringLiteral("X11") : QString();
  const bool hasKGlobalAccel = runs(QStringLiteral("org.kde.kglobalaccel"));
  if (hasKGlobalAccel && isOnPlasma())
    return QStringLiteral("KGlobalAccel");
  const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
  if (runs(portal) &&
      property(portal, QStringLiteral("/org/freedesktop/portal/desktop"),
               QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("version"))
              .toUInt() > 0)
    return QStringLiteral("GlobalShortcuts portal");
  return hasKGlobalAccel && runs(QString::fromUtf16(kKeyCompositor))
             ? QStringLiteral("KGlobalAccel")
             : QString();
}

// On a thread of its own: a sound server that does not answer keeps it for ever.
QString soundProblem() {
  const Canberra& canberra = Canberra::instance();
  if (!canberra.library.problem().isEmpty())
    return QStringLiteral("No sound can be played: %1.").arg(canberra.library.problem());
  auto promise = std::make_shared<std::promise<int>>();
  std::future<int> opened = promise->get_future();
  std::thread([promise, &canberra] {
    ca_context* context = nullptr;
    int result = canberra.context_create(&context);
    if (result == CA_SUCCESS)
      result = canberra.context_open(context);
    if (context)
      canberra.context_destroy(context);
    promise->set_value(result);
  }).detach();
  if (opened.wait_for(std::chrono::milliseconds(kProbePatience)) != std::future_status::ready)
    return QStringLiteral("The sound server does not answer.");
  const int result = opened.get();
  if (result == CA_SUCCESS)
    return {};
  return QStringLiteral("No sound can be played: %1.")
      .arg(QString::fromUtf8(canberra.text_of_error(result)));
}

} // namespace tockwise
