#include "platform/desktop_notification_centre.h"
#include "support/log_lines.h"
#include "support/private_bus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace tockwise;

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
constexpr Date kNow{790000000};

struct Shown {
  QString application;
  uint replaces = 0;
  QString icon;
  QString title;
  QString body;
  QStringList actions;
  QVariantMap hints;
  int expiry = 0;
};

/// The desktop's notification service.
class FakeService : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
 public:
  FakeService() {
    m_connection.bus.registerObject(kPath, this,
                                    QDBusConnection::ExportScriptableSlots |
                                        QDBusConnection::ExportScriptableSignals);
    appear();
  }

  void appear() { QVERIFY(m_connection.bus.registerService(kService)); }
  void disappear() { QVERIFY(m_connection.bus.unregisterService(kService)); }
  void click(uint id, const char* action = "default") {
    Q_EMIT ActionInvoked(id, QString::fromLatin1(action));
  }
  void dismiss(uint id) { Q_EMIT NotificationClosed(id, 2); }

  QStringList capabilities{QStringLiteral("body"), QStringLiteral("body-markup"),
                           QStringLiteral("actions")};
  std::vector<Shown> shown; // number n has the id 100 + n
  std::vector<uint> closed;
  int asked = 0;
  bool refuses = false;
  std::function<void()> beforeAnswer;

 public Q_SLOTS:
  Q_SCRIPTABLE QStringList GetCapabilities() {
    ++asked;
    return capabilities;
  }
  Q_SCRIPTABLE uint Notify(const QString& application, uint replaces, const QString& icon,
                           const QString& title, const QString& body, const QStringList& actions,
                           const QVariantMap& hints, int expiry) {
    if (refuses) {
      sendErrorReply(QDBusError::LimitsExceeded, QStringLiteral("too many"));
      return 0;
    }
    shown.push_back({application, replaces, icon, title, body, actions, hints, expiry});
    if (beforeAnswer)
      beforeAnswer();
    return uint(100 + shown.size());
  }
  Q_SCRIPTABLE void CloseNotification(uint id) {
    closed.push_back(id);
    Q_EMIT NotificationClosed(id, 3);
  }

 Q_SIGNALS:
  Q_SCRIPTABLE void ActionInvoked(uint id, const QString& action);
  Q_SCRIPTABLE void NotificationClosed(uint id, uint reason);

 private:
  BusConnection m_connection;
};

struct Fixture {
  FakeClock clock{kNow};
  int sounds = 0;
  BusConnection connection;
  DesktopNotificationCentre centre{clock, [this] { ++sounds; }, connection.bus};

  quint64 schedule(const QString& text = QStringLiteral("Tea"), double delay = 0,
                   bool sound = true) {
    return centre.schedule(
        {QStringLiteral("Ftech Successful"), text, kNow.plusSeconds(delay), sound});
  }
};

} // namespace

class DesktopNotificationCentreTest : public QObject {
  Q_OBJECT

  std::unique_ptr<PrivateBus> m_bus;

 private Q_SLOTS:
  void initTestCase() {
    enableLogLines();
    QGuiApplication::setDesktopFileName(QStringLiteral("com.quillstone.Tockwise"));
    m_bus = std::make_unique<PrivateBus>();
  }
  void cleanupTestCase() { m_bus.reset(); }

  void aNotificationIsShownWithItsTextsAndSound() {
    FakeService service;
    Fixture f;
    f.schedule();
    QTRY_COMPARE(f.sounds, 1);
    QCOMPARE(service.shown.size(), size_t(1));
    const Shown& shown = service.shown.front();
    QCOMPARE(shown.application, QStringLiteral("Tockwise"));
    QCOMPARE(shown.replaces, uint(0));
    QCOMPARE(shown.icon, QStringLiteral("com.quillstone.Tockwise"));
    QCOMPARE(shown.title, QStringLiteral("Ftech Successful"));
    QCOMPARE(shown.body, QStringLiteral("Tea"));
    QCOMPARE(shown.actions.value(0), QStringLiteral("default"));
    QCOMPARE(shown.hints[QStringLiteral("desktop-entry")].toString(),
             QStringLiteral("com.quillstone.Tockwise"));
    QVERIFY(shown.hints[QStringLiteral("suppress-sound")].toBool()); // it plays ours
    QCOMPARE(shown.expiry, -1);
  }

  void itIsShownAtItsTimeAndNotBefore() {
    FakeService service;
    Fixture f;
    QElapsedTimer waited;
    waited.start();
    f.schedule(QStringLiteral("Tea"), 0.3);
    QCOMPARE(service.asked, 0);
    QTRY_COMPARE(service.shown.size(), size_t(1));
    QVERIFY(waited.elapsed() >= 290);
  }

  void whatIsDueAlreadyIsShownAtOnce() {
    FakeService service;
    Fixture f;
    f.schedule(QStringLiteral("Tea"), -5000);
    QTRY_COMPARE(service.shown.size(), size_t(1));
  }

  void withoutTheFlagThereIsNoSound() {
    FakeService service;
    Fixture f;
    f.schedule(QStringLiteral("silent"), 0, false);
    f.schedule(QStringLiteral("loud"));
    QTRY_COMPARE(service.shown.size(), size_t(2));
    QTRY_COMPARE(f.sounds, 1);
  }

  void textIsNeverMarkup_data() {
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<QString>("body");
    QTest::newRow("a service that knows markup")
        << QStringList{QStringLiteral("body"), QStringLiteral("body-markup")}
        << QStringLiteral("&lt;b&gt;Tea&lt;/b&gt; &amp; cake");
    QTest::newRow("a service that does not")
        << QStringList{QStringLiteral("body")} << QStringLiteral("<b>Tea</b> & cake");
  }

  void textIsNeverMarkup() {
    QFETCH(QStringList, capabilities);
    FakeService service;
    service.capabilities = capabilities;
    Fixture f;
    f.schedule(QStringLiteral("<b>Tea</b> & cake"));
    QTRY_COMPARE(service.shown.size(), size_t(1));
    QTEST(service.shown.front().body, "body");
    QVERIFY(service.shown.front().actions.isEmpty()); // it knows none
  }

  void capabilitiesAreAskedForOnce() {
    FakeService service;
    Fixture f;
    f.schedule();
    f.schedule();
    QTRY_COMPARE(service.shown.size(), size_t(2));
    f.schedule();
    QTRY_COMPARE(service.shown.size(), size_t(3));
    QCOMPARE(service.asked, 1);
  }

  void aClickIsToldWithItsNumberAndTheNotificationCanBeRemoved() {
    FakeService service;
    Fixture f;
    f.schedule();
    const quint64 second = f.schedule();
    QTRY_COMPARE(f.sounds, 2);
    QSignalSpy activated(&f.centre, &NotificationCentre::didActivate);
    connect(&f.centre, &NotificationCentre::didActivate, &f.centre,
            &NotificationCentre::removeDelivered);
    service.click(102, "other");
    service.click(77);
    service.click(102);
    QTRY_COMPARE(activated.count(), 1);
    QCOMPARE(activated.front().front().toULongLong(), second);
    QTRY_COMPARE(service.closed, std::vector<uint>{102});
    service.click(102); // it is gone
    service.click(101);
    QTRY_COMPARE(activated.count(), 2);
  }

  void whatTheUserClosedIsForgotten() {
    FakeService service;
    Fixture f;
    const quint64 number = f.schedule();
    QTRY_COMPARE(f.sounds, 1);
    QSignalSpy activated(&f.centre, &NotificationCentre::didActivate);
    service.dismiss(101);
    f.schedule();
    QTRY_COMPARE(f.sounds, 2); // the signal came before this answer
    f.centre.removeDelivered(number);
    f.centre.removeDelivered(999);
    service.click(101);
    service.click(102);
    QTRY_COMPARE(activated.count(), 1);
    QVERIFY(service.closed.empty());
  }

  void whatIsRemovedBeforeItsTimeIsNotShown() {
    FakeService service;
    Fixture f;
    f.centre.removeDelivered(f.schedule(QStringLiteral("early"), 0.05));
    f.schedule(QStringLiteral("late"), 0.1);
    QTRY_COMPARE(service.shown.size(), size_t(1));
    QCOMPARE(service.shown.front().body, QStringLiteral("late"));
  }

  void whatIsRemovedWhileItIsSentIsClosed() {
    FakeService service;
    Fixture f;
    const quint64 number = f.schedule();
    service.beforeAnswer = [&] { f.centre.removeDelivered(number); };
    QTRY_COMPARE(service.closed, std::vector<uint>{101});
    QCOMPARE(f.sounds, 0);
  }

  void aServiceThatStartsAgainKnowsNothingOfBefore() {
    auto service = std::make_unique<FakeService>();
    Fixture f;
    f.schedule();
    QTRY_COMPARE(f.sounds, 1);
    QSignalSpy activated(&f.centre, &NotificationCentre::didActivate);
    service.reset();
    FakeService next;
    next.capabilities = {QStringLiteral("body")};
    QTest::qWait(50);
    next.click(101); // somebody else's there
    f.schedule(QStringLiteral("<i>"));
    QTRY_COMPARE(f.sounds, 2);
    QCOMPARE(next.asked, 1);
    QCOMPARE(next.shown.front().body, QStringLiteral("<i>"));
    QCOMPARE(activated.count(), 0);
    next.click(101);
    QTRY_COMPARE(activated.count(), 1);
  }

  void withoutAServiceOneLineIsLogged() {
    Fixture f;
    QVERIFY(!f.centre.isAvailable());
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    QTest::ignoreMessage(QtInfoMsg,
                         QRegularExpression(QStringLiteral("^Cannot show a notification: ")));
    f.schedule();
    f.schedule();
    QTest::qWait(100);
    QCOMPARE(f.sounds, 0);
    FakeService service;
    QTRY_VERIFY(f.centre.isAvailable());
    f.schedule(QStringLiteral("after all"));
    QTRY_COMPARE(service.shown.size(), size_t(1));
    QCOMPARE(service.shown.front().body, QStringLiteral("after all"));
  }

  void aRefusalIsLoggedAndTheNextIsTried() {
    FakeService service;
    service.refuses = true;
    Fixture f;
    QTest::ignoreMessage(QtInfoMsg, "Cannot show a notification: too many");
    f.schedule();
    f.schedule();
    QTest::qWait(100);
    service.refuses = false;
    f.schedule(QStringLiteral("third"));
    QTRY_COMPARE(f.sounds, 1);
    QCOMPARE(service.shown.size(), size_t(1));
  }

  void withoutABusOneLineIsLogged() {
    FakeClock clock{kNow};
    int sounds = 0;
    const QDBusConnection none(QStringLiteral("no such connection"));
    DesktopNotificationCentre centre(
        clock, [&] { ++sounds; }, none);
    QVERIFY(!centre.isAvailable());
    QTest::ignoreMessage(QtInfoMsg, "Cannot show a notification: there is no session bus");
    centre.schedule({QStringLiteral("a"), QStringLiteral("b"), kNow, true});
    QTest::qWait(20);
    QCOMPARE(sounds, 0);
  }

  void goingAwayBeforeTheAnswerIsSafe() {
    FakeService service;
    {
      Fixture f;
      f.schedule();
      QTest::qWait(1); // the question is under way, or the answer
    }
    QTest::qWait(50);
  }
};

QTEST_GUILESS_MAIN(DesktopNotificationCentreTest)
#include "desktop_notification_centre_test.moc"
