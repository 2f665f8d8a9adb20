#include "platform/termination_signals.h"

#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace tockwise;

class TerminationSignalsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void signalsAreHeardInTheEventLoop_data() {
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
  }

  void signalsAreHeardInTheEventLoop() {
    QFETCH(int, number);
    TerminationSignals signals;
    QSignalSpy received(&signals, &TerminationSignals::received);
    QCOMPARE(::raise(number), 0);
    QCOMPARE(received.count(), 0);
    QTRY_COMPARE(received.count(), 1);
    ::raise(number);
    QTRY_COMPARE(received.count(), 2);
  }

  void whatIsIgnoredStaysIgnored() {
    const auto before = ::signal(SIGHUP, SIG_IGN);
    const auto restore = qScopeGuard([before] { ::signal(SIGHUP, before); });
    TerminationSignals signals;
    QSignalSpy received(&signals, &TerminationSignals::received);
    ::raise(SIGHUP);
    ::raise(SIGTERM);
    QTRY_COMPARE(received.count(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(received.count(), 1);
  }

  void theSessionManagersRequestIsHeardAndEndsNothingByItself() {
    QSignalSpy quitting(QCoreApplication::instance(), &QCoreApplication::aboutToQuit);
    {
      TerminationSignals signals;
      QSignalSpy received(&signals, &TerminationSignals::received);
      QEvent request(QEvent::Quit); // as Qt passes it on
      QCoreApplication::sendEvent(QCoreApplication::instance(), &request);
      QCOMPARE(received.count(), 1);
      QObject other;
      QCoreApplication::sendEvent(&other, &request);
      QCOMPARE(received.count(), 1);
      QTimer::singleShot(0, this, [&] {
        QCoreApplication::sendEvent(QCoreApplication::instance(), &request);
        QTimer::singleShot(0, this, [] { QCoreApplication::exit(7); }); // it went on
      });
      QCOMPARE(QCoreApplication::exec(), 7);
      QCOMPARE(received.count(), 2);
    }
    QCOMPARE(quitting.count(), 1);
  }

  void theSignalsAreGivenBack() {
    struct sigaction before = {};
    ::sigaction(SIGTERM, nullptr, &before);
    { const TerminationSignals signals; }
    struct sigaction after = {};
    ::sigaction(SIGTERM, nullptr, &after);
    QVERIFY(after.sa_handler == before.sa_handler);
  }
};

QTEST_GUILESS_MAIN(TerminationSignalsTest)
#include "termination_signals_test.moc"
