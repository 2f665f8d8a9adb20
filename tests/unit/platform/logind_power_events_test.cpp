#include "platform/logind_power_events.h"
#include "support/private_bus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

#include <poll.h>
#include <unistd.h>

using namespace tockwise;

namespace {

const QString kService = QStringLiteral("org.freedesktop.login1");
const QString kPath = QStringLiteral("/org/freedesktop/login1");

/// logind as far as sleep goes. Each inhibitor is a pipe, as the real one's: held for as long as
/// its other end is open.
class FakeLogind : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")
 public:
  FakeLogind() {
    m_connection.bus.registerObject(kPath, this,
                                    QDBusConnection::ExportScriptableSlots |
                                        QDBusConnection::ExportScriptableSignals);
    appear();
  }
  ~FakeLogind() override {
    for (int end : m_readEnds)
      ::close(end);
  }

  void appear() { QVERIFY(m_connection.bus.registerService(kService)); }
  void disappear() { QVERIFY(m_connection.bus.unregisterService(kService)); }
  void prepareForSleep(bool sleeping) { Q_EMIT PrepareForSleep(sleeping); }

  /// Inhibitors that somebody holds.
  int held() const {
    int count = 0;
    for (int end : m_readEnds) {
      pollfd state{end, POLLIN, 0};
      ::poll(&state, 1, 0);
      count += (state.revents & POLLHUP) ? 0 : 1;
    }
    return count;
  }

  QList<QStringList> requests;
  bool refuses = false;

 public Q_SLOTS:
  Q_SCRIPTABLE QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who,
                                               const QString& why, const QString& mode) {
    requests += QStringList{what, who, why, mode};
    if (refuses) {
      sendErrorReply(QDBusError::AccessDenied, QStringLiteral("not you"));
      return {};
    }
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0)
      return {};
    m_readEnds += ends[0];
    QDBusUnixFileDescriptor descriptor(ends[1]); // a copy; the message carries another
    ::close(ends[1]);
    return descriptor;
  }

 Q_SIGNALS:
  Q_SCRIPTABLE void PrepareForSleep(bool sleeping);

 private:
  BusConnection m_connection;
  QList<int> m_readEnds;
};

} // namespace

class LogindPowerEventsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aDelayInhibitorIsTakenAtStart() {
    FakeLogind logind;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QVERIFY(!power.holdsInhibitor()); // nothing was waited for
    QTRY_VERIFY(power.holdsInhibitor());
    QVERIFY(power.isAvailable());
    QCOMPARE(logind.held(), 1);
    QCOMPARE(logind.requests.size(), 1);
    QCOMPARE(logind.requests.front()[0], QStringLiteral("sleep"));
    QCOMPARE(logind.requests.front()[1], QStringLiteral("Tockwise"));
    QCOMPARE(logind.requests.front()[3], QStringLiteral("delay"));
  }

  void theMachineIsHeldBackUntilTheReceiversHaveReturned() {
    FakeLogind logind;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTRY_COMPARE(logind.held(), 1);
    QTRY_VERIFY(power.holdsInhibitor());
    QList<int> heldInReceivers;
    for (int receiver = 0; receiver < 2; ++receiver) {
      connect(&power, &PowerEvents::willSleep, this, [&] {
        QTest::qWait(20); // saving takes its time
        heldInReceivers += logind.held();
      });
    }
    logind.prepareForSleep(true);
    QTRY_COMPARE(logind.held(), 0);
    QCOMPARE(heldInReceivers, (QList<int>{1, 1}));
    QVERIFY(!power.holdsInhibitor());
  }

  void wakingIsToldAndTakesTheInhibitorAgain() {
    FakeLogind logind;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTRY_VERIFY(power.holdsInhibitor());
    QSignalSpy sleeps(&power, &PowerEvents::willSleep);
    QSignalSpy wakes(&power, &PowerEvents::didWake);
    for (int night = 1; night <= 3; ++night) {
      logind.prepareForSleep(true);
      QTRY_COMPARE(sleeps.count(), night);
      QTRY_COMPARE(logind.held(), 0);
      logind.prepareForSleep(false);
      QTRY_COMPARE(wakes.count(), night);
      QTRY_COMPARE(logind.held(), 1);
      QTRY_VERIFY(power.holdsInhibitor());
    }
  }

  void aSignalToldTwiceCountsOnce() {
    FakeLogind logind;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTRY_VERIFY(power.holdsInhibitor());
    QSignalSpy sleeps(&power, &PowerEvents::willSleep);
    QSignalSpy wakes(&power, &PowerEvents::didWake);
    logind.prepareForSleep(true);
    logind.prepareForSleep(true);
    logind.prepareForSleep(false);
    QTRY_COMPARE(wakes.count(), 1);
    QCOMPARE(sleeps.count(), 1);
  }

  void withoutABusItIsNotAvailable() {
    LogindPowerEvents power{QDBusConnection(QStringLiteral("no such connection"))};
    QVERIFY(!power.isAvailable());
    QVERIFY(!power.holdsInhibitor());
  }

  void withoutLogindItIsNotAvailableUntilItComes() {
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTest::qWait(50); // the bus says that nobody is there
    QVERIFY(!power.isAvailable());
    FakeLogind logind;
    QTRY_VERIFY(power.isAvailable());
    QTRY_VERIFY(power.holdsInhibitor());
    QSignalSpy sleeps(&power, &PowerEvents::willSleep);
    logind.prepareForSleep(true);
    QTRY_COMPARE(sleeps.count(), 1);
  }

  void logindThatRestartsIsAskedAgain() {
    FakeLogind logind;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTRY_VERIFY(power.holdsInhibitor());
    logind.disappear();
    QTRY_VERIFY(!power.isAvailable());
    QTRY_COMPARE(logind.held(), 0);
    logind.appear();
    QTRY_VERIFY(power.holdsInhibitor());
    QCOMPARE(logind.requests.size(), 2);
  }

  void logindThatGoesDuringSleepCountsAsWaking() {
    FakeLogind logind;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTRY_VERIFY(power.holdsInhibitor());
    QSignalSpy sleeps(&power, &PowerEvents::willSleep);
    QSignalSpy wakes(&power, &PowerEvents::didWake);
    logind.prepareForSleep(true);
    QTRY_COMPARE(sleeps.count(), 1);
    logind.disappear();
    QTRY_COMPARE(wakes.count(), 1);
  }

  void aRefusedInhibitorLeavesTheSignals() {
    FakeLogind logind;
    logind.refuses = true;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTRY_VERIFY(power.isAvailable());
    QVERIFY(!power.holdsInhibitor());
    QSignalSpy sleeps(&power, &PowerEvents::willSleep);
    logind.prepareForSleep(true);
    QTRY_COMPARE(sleeps.count(), 1);
  }

  void anotherProgramsSignalDoesNotCount() {
    FakeLogind logind;
    BusConnection connection;
    LogindPowerEvents power(connection.bus);
    QTRY_VERIFY(power.holdsInhibitor());
    QSignalSpy sleeps(&power, &PowerEvents::willSleep);
    BusConnection stranger;
    QDBusMessage forged = QDBusMessage::createSignal(
        kPath, QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"));
    forged << true;
    QVERIFY(stranger.bus.send(forged));
    QTest::qWait(50);
    QCOMPARE(sleeps.count(), 0);
  }

  void goingAwayReleasesTheInhibitor() {
    FakeLogind logind;
    BusConnection connection;
    {
      LogindPowerEvents power(connection.bus);
      QTRY_VERIFY(power.holdsInhibitor());
    }
    QTRY_COMPARE(logind.held(), 0);
  }

  void goingAwayBeforeTheAnswerIsSafe() {
    FakeLogind logind;
    BusConnection connection;
    { LogindPowerEvents power(connection.bus); }
    QTRY_COMPARE(logind.requests.size(), 1);
    QTRY_COMPARE(logind.held(), 0);
  }

 private:
  PrivateBus m_bus;
};

QTEST_GUILESS_MAIN(LogindPowerEventsTest)
#include "logind_power_events_test.moc"
