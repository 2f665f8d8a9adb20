#include "base/clock.h"
#include "platform/time/timerfd_wake_timer.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>

using namespace tockwise;

class WakeTimerTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() {
    m_home = std::make_unique<TestEnvironment>();
    m_folder = m_home->path(QStringLiteral("etc"));
    QVERIFY(QDir().mkpath(m_folder));
    m_timer = std::make_unique<TimerfdWakeTimer>(m_folder);
  }
  void cleanup() { m_timer.reset(); }

  void theAlarmComesAtItsInstantAndOnce() {
    const QSignalSpy expired(m_timer.get(), &WakeTimer::expired);
    const SystemClock clock;
    const Date when = clock.now().plusSeconds(0.05);
    Date came;
    connect(m_timer.get(), &WakeTimer::expired, this, [&] { came = clock.now(); });
    m_timer->arm(when);
    QTRY_COMPARE(expired.size(), 1);
    QVERIFY(came >= when);
    passTime();
    QCOMPARE(expired.size(), 1);
  }

  void anInstantThatHasPassedComesAtOnce() {
    const QSignalSpy expired(m_timer.get(), &WakeTimer::expired);
    for (const Date when : {SystemClock().now().plusSeconds(-1), Date::fromUnixSeconds(0),
                            kDistantPast, Date{-std::numeric_limits<double>::infinity()}}) {
      const auto before = expired.size();
      m_timer->arm(when);
      QTRY_COMPARE(expired.size(), before + 1);
    }
  }

  void aNewAlarmReplacesTheOld() {
    const QSignalSpy expired(m_timer.get(), &WakeTimer::expired);
    m_timer->arm(SystemClock().now().plusSeconds(0.01));
    m_timer->arm(SystemClock().now().plusSeconds(3600));
    passTime();
    QCOMPARE(expired.size(), 0);
    m_timer->arm(SystemClock().now().plusSeconds(0.01));
    QTRY_COMPARE(expired.size(), 1);
  }

  void aDisarmedTimerIsSilent() {
    const QSignalSpy expired(m_timer.get(), &WakeTimer::expired);
    m_timer->arm(SystemClock().now().plusSeconds(0.01));
    m_timer->disarm();
    m_timer->arm(SystemClock().now());
    m_timer->disarm(); // although it may have run off already
    passTime();
    QCOMPARE(expired.size(), 0);
  }

  void whatNeverComesIsSilent() {
    const QSignalSpy expired(m_timer.get(), &WakeTimer::expired);
    for (const double seconds :
         {kDistantFuture.seconds, 1e300, std::numeric_limits<double>::infinity(), std::nan("")}) {
      m_timer->arm({seconds});
      passTime();
    }
    QCOMPARE(expired.size(), 0);
  }

  void anAlarmMayBeSetFromTheAlarm() {
    int count = 0;
    connect(m_timer.get(), &WakeTimer::expired, this, [&] {
      if (++count < 5)
        m_timer->arm(SystemClock().now().plusSeconds(0.002));
    });
    m_timer->arm(SystemClock().now());
    QTRY_COMPARE(count, 5);
  }

  void aLinkedZoneIsNoticedEachTimeItIsReplaced() {
    const QSignalSpy changed(m_timer.get(), &WakeTimer::clockChanged);
    int times = 0;
    for (const char* zone : {"Europe/Berlin", "Asia/Kolkata", "Pacific/Apia"}) {
      replaceLink(QStringLiteral("/usr/share/zoneinfo/") + QString::fromLatin1(zone));
      ++times;
      QTRY_COMPARE(changed.size(), times);
    }
  }

  void aZoneFileWrittenInPlaceIsNoticed() {
    write(QStringLiteral("localtime"), "first");
    const QSignalSpy changed(m_timer.get(), &WakeTimer::clockChanged);
    QTRY_VERIFY(changed.size() >= 1);
    const auto before = changed.size();
    passTime();
    write(QStringLiteral("localtime"), "second, and longer");
    QTRY_VERIFY(changed.size() > before);
  }

  void otherFilesOfTheFolderDoNotMatter() {
    const QSignalSpy changed(m_timer.get(), &WakeTimer::clockChanged);
    write(QStringLiteral("resolv.conf"), "nameserver");
    passTime();
    QCOMPARE(changed.size(), 0);
  }

 private:
  /// Lets the event loop run for a while, by another timer of the same kind.
  static void passTime() {
    TimerfdWakeTimer other;
    const QSignalSpy expired(&other, &WakeTimer::expired);
    other.arm(SystemClock().now().plusSeconds(0.04));
    QTRY_COMPARE(expired.size(), 1);
  }
  void write(const QString& name, const QByteArray& content) {
    QFile file(QDir(m_folder).filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
  void replaceLink(const QString& target) {
    const QString fresh = QDir(m_folder).filePath(QStringLiteral(".localtime.new"));
    QVERIFY(QFile::link(target, fresh));
    QCOMPARE(
        ::rename(
            QFile::encodeName(fresh).constData(),
            QFile::encodeName(QDir(m_folder).filePath(QStringLiteral("localtime"))).constData()),
        0);
  }

  std::unique_ptr<TestEnvironment> m_home;
  QString m_folder;
  std::unique_ptr<TimerfdWakeTimer> m_timer;
};

QTEST_GUILESS_MAIN(WakeTimerTest)
#include "wake_timer_test.moc"
