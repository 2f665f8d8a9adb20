// What only a real notification daemon can show: that it shows what it is given, as text, and that
// a click takes it away.
#include "alerts/post_alert.h"
#include "platform/desktop_notification_centre.h"
#include "support/fakes.h"

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tockwise;

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");

QByteArray dunstctl(const QStringList& words) {
  QProcess process;
  process.start(QStringLiteral("dunstctl"), words);
  process.waitForFinished();
  return process.readAllStandardOutput();
}

int displayed() {
  return dunstctl({QStringLiteral("count"), QStringLiteral("displayed")}).trimmed().toInt();
}

/// What the daemon holds of the notification closed last.
QJsonObject closedLast() {
  const QJsonDocument history = QJsonDocument::fromJson(dunstctl({QStringLiteral("history")}));
  return history[QStringLiteral("data")].toArray().first().toArray().first().toObject();
}

QString entry(const QJsonObject& notification, const char* name) {
  return notification[QLatin1String(name)].toObject()[QStringLiteral("data")].toString();
}

} // namespace

class NotificationDaemonTest : public QObject {
  Q_OBJECT

  QTemporaryDir m_folder;
  QProcess m_daemon;

 private Q_SLOTS:
  void init() {
    QGuiApplication::setDesktopFileName(QStringLiteral("com.quillstone.Tockwise"));
    QFile configuration(m_folder.filePath(QStringLiteral("dunstrc")));
    QVERIFY(configuration.open(QIODevice::WriteOnly));
    configuration.write("[global]\nmarkup = full\n");
    configuration.close();
    m_daemon.start(QStringLiteral("dunst"), {QStringLiteral("-conf"), configuration.fileName()});
    QVERIFY(m_daemon.waitForStarted());
    QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(kService).value());
  }
  void cleanup() {
    m_daemon.terminate();
    m_daemon.waitForFinished();
  }

  void aPostedAlertIsShownAfterASecondAndAClickRemovesIt() {
    const SystemClock clock;
    int sounds = 0;
    DesktopNotificationCentre centre(clock, [&] { ++sounds; });
    PostAlert poster(centre, clock);
    QVERIFY(centre.isAvailable());
    QSignalSpy activated(&centre, &NotificationCentre::didActivate);
    QElapsedTimer waited;
    waited.start();
    poster.postAlert(QStringLiteral("<b>Tea</b> & \"cake\""));
    QTRY_COMPARE(sounds, 1);
    QVERIFY(waited.elapsed() >= 1000);
    QTRY_COMPARE(displayed(), 1);
    dunstctl({QStringLiteral("action")}); // as a click on it does
    QTRY_COMPARE(activated.count(), 1);
    QTRY_COMPARE(displayed(), 0);
    const QJsonObject shown = closedLast();
    QCOMPARE(entry(shown, "summary"), QStringLiteral("Ftech Successful"));
    QCOMPARE(entry(shown, "appname"), QStringLiteral("Tockwise"));
    // The daemon holds the body as markup: what is text in it is escaped.
    QCOMPARE(entry(shown, "body"), QStringLiteral("&lt;b&gt;Tea&lt;/b&gt; &amp; &quot;cake&quot;"));
  }

  void aDaemonThatStartsAgainIsUsed() {
    const SystemClock clock;
    int sounds = 0;
    DesktopNotificationCentre centre(clock, [&] { ++sounds; });
    centre.schedule({QStringLiteral("One"), QStringLiteral("1"), clock.now(), true});
    QTRY_COMPARE(sounds, 1);
    cleanup();
    init();
    centre.schedule({QStringLiteral("Two"), QStringLiteral("2"), clock.now(), true});
    QTRY_COMPARE(sounds, 2);
    QCOMPARE(displayed(), 1);
  }
};

QTEST_GUILESS_MAIN(NotificationDaemonTest)
#include "notification_daemon_test.moc"
