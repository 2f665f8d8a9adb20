#include "mail/mail_beat.h"
#include "support/log_lines.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

QStringList* s_lines = nullptr;

} // namespace

class MailBeatTest : public QObject {
  Q_OBJECT

  MemorySettings m_settings;
  MailBeat::Time m_now{};
  std::unique_ptr<MailBeat> m_beat;
  QStringList m_lines;

  void setRate(qint64 index) { m_settings.setValue(text("rateIndex"), Value(index)); }

 private Q_SLOTS:
  void initTestCase() {
    enableLogLines();
    s_lines = &m_lines;
    qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& line) { *s_lines += line; });
  }
  void cleanupTestCase() { qInstallMessageHandler(nullptr); }
  void init() {
    m_settings.setValue(text("rateIndex"), Value());
    m_now = 123456789ms;
    m_beat = std::make_unique<MailBeat>(m_settings, nullptr, [this] { return m_now; });
    m_lines.clear();
  }

  void theRateIndexGivesThePeriod_data() {
    QTest::addColumn<qint64>("index");
    QTest::addColumn<qint64>("seconds");
    QTest::newRow("0") << 0LL << 10LL;
    QTest::newRow("1") << 1LL << 20LL;
    QTest::newRow("2") << 2LL << 30LL;
    QTest::newRow("5") << 5LL << 60LL;
    QTest::newRow("negative") << -4LL << 10LL;
    QTest::newRow("beyond all reason") << std::numeric_limits<qint64>::max() << 10'000'010LL;
  }
  void theRateIndexGivesThePeriod() {
    QFETCH(qint64, index);
    QFETCH(qint64, seconds);
    QCOMPARE(m_beat->period().count(), 10); // absent
    setRate(index);
    QCOMPARE(m_beat->period().count(), seconds);
  }

  void theFirstBeatComesAfterOnePeriod() {
    m_beat->start();
    QVERIFY(!m_beat->mailBeatFlag());
    m_now += 9999ms;
    QVERIFY(!m_beat->mailBeatFlag());
    m_now += 1ms;
    QVERIFY(m_beat->mailBeatFlag());
  }
  void theFlagStaysUntilItIsCleared() {
    m_beat->start();
    m_now += 95s;
    QVERIFY(m_beat->mailBeatFlag());
    m_beat->clearMailBeatFlag();
    QVERIFY(!m_beat->mailBeatFlag());
    m_now += 4s;
    QVERIFY(!m_beat->mailBeatFlag());
    m_now += 1s; // beats come at their times, whenever messages go
    QVERIFY(m_beat->mailBeatFlag());
  }
  void oneMessageLeavesPerBeat() {
    setRate(2);
    m_beat->start();
    int sent = 0;
    for (int second = 0; second < 300; ++second) { // a message always waits, and polls
      m_now += 1s;
      if (m_beat->mailBeatFlag()) {
        m_beat->clearMailBeatFlag();
        ++sent;
      }
    }
    QCOMPARE(sent, 10); // one per 30 seconds
  }
  void nothingBeatsBeforeTheStart() {
    m_now += 100s;
    QVERIFY(!m_beat->mailBeatFlag());
    m_beat->start();
    QVERIFY(!m_beat->mailBeatFlag());
  }
  void startingAgainChangesNothing() {
    m_beat->start();
    m_now += 9s;
    setRate(5);
    m_beat->start();
    m_now += 1s;
    QVERIFY(m_beat->mailBeatFlag());
    QVERIFY(m_lines.isEmpty());
  }

  void anotherRateStartsAnew() {
    m_beat->start();
    m_now += 9s;
    setRate(1);
    m_beat->beatChanged();
    QCOMPARE(m_lines, (QStringList{text("Restarted beat"), text("Time Interval: 20.000000")}));
    m_now += 19s;
    QVERIFY(!m_beat->mailBeatFlag());
    m_now += 1s;
    QVERIFY(m_beat->mailBeatFlag());
  }
  void aRateThatWasSetElsewhereIsFollowed() {
    m_beat->start();
    m_now += 9s;
    m_beat->follow();
    QVERIFY(m_lines.isEmpty());
    m_now += 1s;
    QVERIFY(m_beat->mailBeatFlag());
    m_beat->clearMailBeatFlag();
    setRate(1);
    m_beat->follow();
    QCOMPARE(m_lines, (QStringList{text("Restarted beat"), text("Time Interval: 20.000000")}));
    m_now += 19s;
    QVERIFY(!m_beat->mailBeatFlag());
    m_now += 1s;
    QVERIFY(m_beat->mailBeatFlag());
  }
  void followingDoesNotStart() {
    setRate(3);
    m_beat->follow();
    m_now += 100s;
    QVERIFY(!m_beat->mailBeatFlag());
    QVERIFY(m_lines.isEmpty());
  }
  void theSameRateGoesOn() {
    m_beat->start();
    m_now += 9s;
    m_beat->beatChanged();
    QCOMPARE(m_lines, QStringList{text("Time Interval: 10.000000")});
    m_now += 1s;
    QVERIFY(m_beat->mailBeatFlag());
  }
  void aBeatThatHasComeIsKeptWhenTheRateChanges() {
    m_beat->start();
    m_now += 10s;
    setRate(2);
    m_beat->beatChanged();
    QVERIFY(m_beat->mailBeatFlag());
    m_beat->clearMailBeatFlag();
    QVERIFY(!m_beat->mailBeatFlag());
    m_now += 30s;
    QVERIFY(m_beat->mailBeatFlag());
  }
  void changingTheRateBeforeTheStartStarts() {
    m_beat->beatChanged();
    QCOMPARE(m_lines, QStringList{text("Time Interval: 10.000000")});
    m_now += 10s;
    QVERIFY(m_beat->mailBeatFlag());
  }

  void whoWaitsIsToldOnce() {
    QSignalSpy beats(m_beat.get(), &MailBeat::beat);
    m_beat->start();
    m_now += 9990ms;
    m_beat->awaitBeat();
    m_beat->awaitBeat(); // another one who waits
    QTest::qWait(50);    // the timer comes early by our clock: it has to wait on
    QCOMPARE(beats.count(), 0);
    m_now += 10ms;
    QTRY_COMPARE(beats.count(), 1);
    QVERIFY(m_beat->mailBeatFlag());
    m_now += 9990ms;
    QTest::qWait(50);
    QCOMPARE(beats.count(), 1);
    m_beat->awaitBeat();
    m_now += 10ms;
    QTRY_COMPARE(beats.count(), 2);
  }
  void whoWaitsGoesOnWaitingWhenTheRateChanges() {
    QSignalSpy beats(m_beat.get(), &MailBeat::beat);
    setRate(5);
    m_beat->start();
    m_beat->awaitBeat();
    m_now += 59s;
    setRate(0);
    m_beat->beatChanged(); // the next one comes in 10 seconds, not in one
    QVERIFY(m_beat->isAwaited());
    m_now += 9990ms;
    m_beat->awaitBeat(); // another one who waits; and the program's own time must not take long
    m_now += 10ms;
    QTRY_COMPARE(beats.count(), 1);
    QVERIFY(!m_beat->isAwaited());
  }
  void nobodyWaitingWakesNobody() {
    m_beat->start();
    m_beat->beatChanged();
    setRate(3);
    m_beat->beatChanged();
    m_now += 1000s;
    QVERIFY(m_beat->mailBeatFlag());
    m_beat->clearMailBeatFlag();
    QVERIFY(!m_beat->isAwaited());
    m_beat->awaitBeat();
    QVERIFY(m_beat->isAwaited());
  }
};

QTEST_GUILESS_MAIN(MailBeatTest)
#include "mail_beat_test.moc"
