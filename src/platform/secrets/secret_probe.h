// Looking at a keeper of passwords over D-Bus, without starting it and without asking the user.
#pragma once

#include "ports/secret_store.h"

#include <QDBusMessage>

#include <functional>

class QDBusServiceWatcher;

namespace tockwise {

/// Main thread.
class SecretProbe : public QObject {
  Q_OBJECT
 public:
  using Found = std::function<void(SecretStore::State)>;

  /// service: its name on the session bus.
  explicit SecretProbe(const QString& service, QObject* parent = nullptr);
  ~SecretProbe() override;

  /// found is called once, with NotAvailable where nothing answers in time.
  void look(Found found);
  /// Starts the service, which the bus may know how to do, then looks.
  void wake(Found found);

 Q_SIGNALS:
  /// It may be worth to look again.
  void maybeChanged();
  /// The service started, ended, or was replaced by another.
  void ownerChanged();

 protected:
  using Reply = std::function<void(const QDBusMessage&)>;
  /// Asks the service for its state; it runs.
  virtual void lookAtRunning(Found found) = 0;
  virtual void listen() = 0;
  /// Calls a method of the service, or of the bus, without starting anything. answer gets the reply
  /// or an error, unless the probe is gone by then.
  void call(QDBusMessage message, Reply answer);
  QDBusMessage methodCall(const QString& path, const QString& interface,
                          const QString& method) const;
  const QString& service() const { return m_service; }

 private:
  void watch();

  QString m_service;
  QDBusServiceWatcher* m_watcher = nullptr; // a child; made when somebody looks
};

/// The Secret Service of GNOME and others: its default collection.
class SecretServiceProbe final : public SecretProbe {
 public:
  explicit SecretServiceProbe(QObject* parent = nullptr);

 private:
  void lookAtRunning(Found found) override;
  void listen() override;
};

/// KDE's wallet: the one for passwords of the network.
class WalletProbe final : public SecretProbe {
 public:
  /// version: of Plasma.
  WalletProbe(int version, QObject* parent = nullptr);

 private:
  void lookAtRunning(Found found) override;
  void listen() override;

  QString m_path;
};

} // namespace tockwise
