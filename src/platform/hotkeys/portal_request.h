// One request to a desktop portal, whose answer comes as a signal of an object of its own.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace tockwise {

inline constexpr char16_t kPortalService[] = u"org.freedesktop.portal.Desktop";
inline constexpr char16_t kPortalPath[] = u"/org/freedesktop/portal/desktop";

/// The path of an object that the portal makes for us: kind is "request" or "session". Any
/// thread.
QString portalPath(const QDBusConnection& bus, const QString& kind, const QString& token);

/// Main thread. Deleting it (with its parent) stops the waiting.
class PortalRequest final : public QObject {
  Q_OBJECT
 public:
  struct Answer {
    bool isGiven = false; // else the call itself failed, for the reason
    uint response = 0;    // 0: done, 1: the user said no, else it could not be done
    QVariantMap results;
    QString reason;
  };
  using Done = std::function<void(const Answer&)>;

  /// A token that no other request of this process has.
  static QString newToken();
  /// Sends call, one of whose options is "handle_token" with that token. Deletes itself with its
  /// answer.
  PortalRequest(const QDBusConnection& bus, const QDBusMessage& call, const QString& token,
                Done done, QObject* parent);

 private Q_SLOTS:
  void responded(const QDBusMessage& message);

 private:
  void listen(const QString& path);
  void finish(const Answer& answer);

  QDBusConnection m_bus;
  Done m_done;
};

} // namespace tockwise
