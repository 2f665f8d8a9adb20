// A message bus for tests of what speaks to the desktop's services. Tests that use it link
// Qt6::DBus, by what they test.
#pragma once

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace tockwise {

/// A bus of the test's own, which starts no services. The process takes it for the session's and
/// for the system's, so nothing reaches those of the machine.
class PrivateBus {
 public:
  PrivateBus() {
    QFile configuration(m_folder.filePath(QStringLiteral("bus.conf")));
    if (!configuration.open(QIODevice::WriteOnly))
      qFatal("%s", qPrintable(configuration.errorString()));
    configuration.write("<busconfig><type>session</type><listen>unix:path=" +
                        m_folder.filePath(QStringLiteral("bus")).toUtf8() +
                        "</listen><policy context=\"default\"><allow send_destination=\"*\" "
                        "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                        "<allow own=\"*\"/></policy></busconfig>");
    configuration.close();
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + configuration.fileName(),
                    QStringLiteral("--nofork"), QStringLiteral("--print-address")});
    if (!m_daemon.waitForStarted() || !m_daemon.waitForReadyRead())
      qFatal("dbus-daemon does not run: %s", qPrintable(m_daemon.errorString()));
    const QByteArray address = m_daemon.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
  }
  ~PrivateBus() {
    m_daemon.terminate();
    m_daemon.waitForFinished();
  }

 private:
  QTemporaryDir m_folder;
  QProcess m_daemon;
};

/// A connection to the private bus that was made last, under a name of its own.
class BusConnection {
 public:
  BusConnection()
      : m_name(QStringLiteral("test%1").arg(++s_count)),
        // By its address: of the session's bus, the library keeps the first that it saw.
        bus(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                          m_name)) {}
  ~BusConnection() { QDBusConnection::disconnectFromBus(m_name); }
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

 private:
  static inline int s_count = 0;
  QString m_name;

 public:
  QDBusConnection bus;
};

} // namespace tockwise
