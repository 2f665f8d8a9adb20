#include "menu/ui/notifier_item.h"

#include "menu/ui/dbus_interfaces.h"
#include "menu/ui/dbus_types.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tockwise {
namespace {

const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString kItemPath = QStringLiteral("/StatusNotifierItem");
const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString kApplicationId = QStringLiteral("com.quillstone.Tockwise");

} // namespace

NotifierItem::NotifierItem(QDBusConnection connection, const QString& menuPath, QObject* parent)
    : QDBusVirtualObject(parent),
      m_connection(std::move(connection)),
      m_menuPath(menuPath),
      m_title(QStringLiteral("Tockwise")) {
  registerDbusTypes();
  m_service =
      QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
  m_watcher.setConnection(m_connection);
  m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  m_watcher.addWatchedService(kWatcher);
  connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString& before, const QString& owner) {
            if (!before.isEmpty())
              setHost(false);
            if (!owner.isEmpty())
              askForHost();
          });
}

NotifierItem::~NotifierItem() {
  m_connection.unregisterObject(kItemPath);
  m_connection.unregisterService(m_service);
}

void NotifierItem::start() {
  m_connection.registerVirtualObject(kItemPath, this);
  // From whomever, and then asked about: to hear of one sender alone, Qt first waits for the bus.
  m_connection.connect(QString(), kWatcherPath, kWatcher,
                       QStringLiteral("StatusNotifierHostRegistered"), this,
                       SLOT(hostRegistered()));
  askForHost();
}

void NotifierItem::hostRegistered() {
  askForHost();
}

void NotifierItem::askForHost() {
  QDBusMessage call = QDBusMessage::createMethodCall(kWatcher, kWatcherPath, kPropertiesInterface,
                                                     QStringLiteral("Get"));
  call << kWatcher << QStringLiteral("IsStatusNotifierHostRegistered");
  call.setAutoStartService(false);
  auto* pending = new QDBusPendingCallWatcher(m_connection.asyncCall(call), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
    const QDBusPendingReply<QDBusVariant> reply = *pending;
    setHost(reply.isValid() && reply.value().variant().toBool());
    pending->deleteLater();
  });
}

void NotifierItem::setHost(bool hasHost) {
  const bool first = !std::exchange(m_known, true);
  const bool changed = m_hasHost != hasHost;
  m_hasHost = hasHost;
  if (hasHost && changed)
    announce();
  if (changed)
    Q_EMIT hostChanged(hasHost);
  if (first)
    Q_EMIT hostKnown();
}

void NotifierItem::announce() {
  m_connection.registerService(m_service);
  QDBusMessage call = QDBusMessage::createMethodCall(kWatcher, kWatcherPath, kWatcher,
                                                     QStringLiteral("RegisterStatusNotifierItem"));
  call << m_service;
  m_connection.send(call);
}

void NotifierItem::setIcon(const QIcon& icon) {
  m_icon = icon;
  sendSignal(QStringLiteral("NewIcon"));
}

void NotifierItem::setToolTip(const QString& title, const QString& text) {
  if (m_title == title && m_text == text)
    return;
  m_title = title;
  m_text = text;
  sendSignal(QStringLiteral("NewToolTip"));
}

void NotifierItem::sendSignal(const QString& name) {
  if (m_hasHost)
    m_connection.send(QDBusMessage::createSignal(kItemPath, kItemInterface, name));
}

QVariantMap NotifierItem::properties() const {
  const auto noPixmaps = QVariant::fromValue(QList<DbusPixmap>());
  return {
      {QStringLiteral("Category"), QStringLiteral("ApplicationStatus")},
      {QStringLiteral("Id"), kApplicationId},
      {QStringLiteral("Title"), QStringLiteral("Tockwise")},
      {QStringLiteral("Status"), QStringLiteral("Active")},
      {QStringLiteral("WindowId"), 0},
      {QStringLiteral("IconThemePath"), QString()},
      {QStringLiteral("IconName"), QString()},
      {QStringLiteral("IconPixmap"), QVariant::fromValue(dbusPixmaps(m_icon))},
      {QStringLiteral("OverlayIconName"), QString()},
      {QStringLiteral("OverlayIconPixmap"), noPixmaps},
      {QStringLiteral("AttentionIconName"), QString()},
      {QStringLiteral("AttentionIconPixmap"), noPixmaps},
      {QStringLiteral("AttentionMovieName"), QString()},
      // The text may hold markup for panels, so the user's is escaped.
      {QStringLiteral("ToolTip"),
       QVariant::fromValue(DbusToolTip{m_title, m_text.toHtmlEscaped()})},
      {QStringLiteral("ItemIsMenu"), true},
      {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(m_menuPath))},
  };
}

bool NotifierItem::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  const QVariantList arguments = message.arguments();
  if (message.interface() == kPropertiesInterface && message.member() == u"GetAll")
    return connection.send(message.createReply(properties()));
  if (message.interface() == kPropertiesInterface && message.member() == u"Get") {
    const QVariant value = properties().value(arguments.value(1).toString());
    return value.isValid() &&
           connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
  }
  if (message.interface() != kItemInterface)
    return false;
  const QString member = message.member();
  if (member == u"Activate" || member == u"SecondaryActivate" || member == u"ContextMenu") {
    connection.send(message.createReply());
    Q_EMIT menuRequested({arguments.value(0).toInt(), arguments.value(1).toInt()});
    return true;
  }
  if (member == u"ProvideXdgActivationToken") {
    // With it, what is chosen in the menu may come to the front on Wayland: Qt takes it from there.
    if (const QString token = arguments.value(0).toString(); !token.isEmpty())
      qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    return connection.send(message.createReply());
  }
  if (member == u"Scroll")
    return connection.send(message.createReply());
  return false;
}

QString NotifierItem::introspect(const QString&) const {
  return itemIntrospection();
}

} // namespace tockwise
