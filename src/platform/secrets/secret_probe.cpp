#include "platform/secrets/secret_probe.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace tockwise {
namespace {

using State = SecretStore::State;

constexpr int kAnswerPatience = 2000; // ms for an answer
constexpr int kStartPatience = 8000;  // ms for a service to start

const QString kBus = QStringLiteral("org.freedesktop.DBus");
const QString kBusPath = QStringLiteral("/org/freedesktop/DBus");
const QString kSecretsPath = QStringLiteral("/org/freedesktop/secrets");
const QString kSecretService = QStringLiteral("org.freedesktop.Secret.Service");
const QString kSecretCollection = QStringLiteral("org.freedesktop.Secret.Collection");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kWallet = QStringLiteral("org.kde.KWallet");

QDBusMessage busCall(const QString& method) {
  return QDBusMessage::createMethodCall(kBus, kBusPath, kBus, method);
}

QVariant firstOf(const QDBusMessage& reply) {
  return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

} // namespace

SecretProbe::SecretProbe(const QString& service, QObject* parent)
    : QObject(parent), m_service(service) {}

SecretProbe::~SecretProbe() = default;

void SecretProbe::call(QDBusMessage message, Reply answer) {
  message.setAutoStartService(false);
  const bool starts = message.member() == u"StartServiceByName";
  auto* watcher = new QDBusPendingCallWatcher(
      QDBusConnection::sessionBus().asyncCall(message, starts ? kStartPatience : kAnswerPatience),
      this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answer = std::move(answer)] {
    watcher->deleteLater();
    answer(watcher->reply());
  });
}

QDBusMessage SecretProbe::methodCall(const QString& path, const QString& interface,
                                     const QString& method) const {
  return QDBusMessage::createMethodCall(m_service, path, interface, method);
}

void SecretProbe::watch() {
  if (m_watcher)
    return;
  m_watcher = new QDBusServiceWatcher(m_service, QDBusConnection::sessionBus(),
                                      QDBusServiceWatcher::WatchForOwnerChange, this);
  connect(m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
    Q_EMIT ownerChanged();
    Q_EMIT maybeChanged();
  });
  listen();
}

void SecretProbe::look(Found found) {
  if (!QDBusConnection::sessionBus().isConnected()) {
    found(State::NotAvailable);
    return;
  }
  watch();
  QDBusMessage hasOwner = busCall(QStringLiteral("NameHasOwner"));
  hasOwner << m_service;
  call(hasOwner, [this, found = std::move(found)](const QDBusMessage& reply) {
    if (firstOf(reply).toBool()) {
      lookAtRunning(found);
      return;
    }
    call(busCall(QStringLiteral("ListActivatableNames")), [this, found](const QDBusMessage& names) {
      const bool canStart = firstOf(names).toStringList().contains(m_service);
      found(canStart ? State::Unknown : State::NotAvailable);
    });
  });
}

void SecretProbe::wake(Found found) {
  if (!QDBusConnection::sessionBus().isConnected()) {
    found(State::NotAvailable);
    return;
  }
  QDBusMessage start = busCall(QStringLiteral("StartServiceByName"));
  start << m_service << 0U;
  call(start, [this, found = std::move(found)](const QDBusMessage&) { look(found); });
}

SecretServiceProbe::SecretServiceProbe(QObject* parent)
    : SecretProbe(QStringLiteral("org.freedesktop.secrets"), parent) {}

void SecretServiceProbe::lookAtRunning(Found found) {
  QDBusMessage alias = methodCall(kSecretsPath, kSecretService, QStringLiteral("ReadAlias"));
  alias << QStringLiteral("default");
  call(alias, [this, found = std::move(found)](const QDBusMessage& reply) {
    const QString path = firstOf(reply).value<QDBusObjectPath>().path();
    if (path.size() <= 1) { // "/": nothing to keep a secret in, and making one asks the user
      found(State::NotAvailable);
      return;
    }
    QDBusMessage locked = methodCall(path, kProperties, QStringLiteral("Get"));
    locked << kSecretCollection << QStringLiteral("Locked");
    call(locked, [found](const QDBusMessage& property) {
      const QVariant value = firstOf(property).value<QDBusVariant>().variant();
      found(!value.isValid() ? State::NotAvailable
            : value.toBool() ? State::Locked
                             : State::Available);
    });
  });
}

void SecretServiceProbe::listen() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  for (const char* signal : {"CollectionCreated", "CollectionDeleted", "CollectionChanged"}) {
    bus.connect(service(), kSecretsPath, kSecretService, QString::fromLatin1(signal), this,
                SIGNAL(maybeChanged()));
  }
  bus.connect(service(), QString(), kProperties, QStringLiteral("PropertiesChanged"), this,
              SIGNAL(maybeChanged()));
}

WalletProbe::WalletProbe(int version, QObject* parent)
    : SecretProbe(QStringLiteral("org.kde.kwalletd%1").arg(version), parent),
      m_path(QStringLiteral("/modules/kwalletd%1").arg(version)) {}

void WalletProbe::lookAtRunning(Found found) {
  call(methodCall(m_path, kWallet, QStringLiteral("isEnabled")),
       [this, found = std::move(found)](const QDBusMessage& enabled) {
         if (!firstOf(enabled).toBool()) {
           found(State::NotAvailable);
           return;
         }
         call(methodCall(m_path, kWallet, QStringLiteral("networkWallet")),
              [this, found](const QDBusMessage& name) {
                QDBusMessage isOpen = methodCall(m_path, kWallet, QStringLiteral("isOpen"));
                isOpen << firstOf(name).toString();
                call(isOpen, [found](const QDBusMessage& open) {
                  const QVariant value = firstOf(open);
                  found(!value.isValid() ? State::NotAvailable
                        : value.toBool() ? State::Available
                                         : State::Locked);
                });
              });
       });
}

void WalletProbe::listen() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  for (const char* signal : {"walletOpened", "walletClosed", "allWalletsClosed"})
    bus.connect(service(), m_path, kWallet, QString::fromLatin1(signal), this,
                SIGNAL(maybeChanged()));
}

} // namespace tockwise
