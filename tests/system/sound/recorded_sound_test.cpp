#include "platform/canberra_sound_player.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <cstdlib>
#include <memory>

using namespace tockwise;

namespace {

QString sound(const char* name) {
  return QStringLiteral(TOCKWISE_SOUNDS "/") + QString::fromLatin1(name);
}

/// A PulseAudio of the test's own, whose loudspeaker is recorded.
class RecordedLoudspeaker {
 public:
  explicit RecordedLoudspeaker(const TestEnvironment& environment) {
    const QString runtime = environment.path(QStringLiteral("run"));
    QDir().mkpath(runtime);
    const QString socket = runtime + QStringLiteral("/native");
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
    qputenv("PULSE_RUNTIME_PATH", runtime.toUtf8());
    qputenv("PULSE_SERVER", (QStringLiteral("unix:") + socket).toUtf8());
    qputenv("CANBERRA_DRIVER", "pulse");
    m_server.start(
        QStringLiteral("pulseaudio"),
        {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
         QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
         QStringLiteral("-L"), QStringLiteral("module-null-sink sink_name=spk"),
         QStringLiteral("-L"),
         QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") + socket});
    m_started = m_server.waitForStarted() &&
                QTest::qWaitFor([&] { return QFileInfo::exists(socket); }, 10000);
    m_recorder.start(QStringLiteral("parec"),
                     {QStringLiteral("--raw"), QStringLiteral("--format=s16le"),
                      QStringLiteral("--channels=1"), QStringLiteral("--latency-msec=20"),
                      QStringLiteral("-d"), QStringLiteral("spk.monitor")});
  }
  ~RecordedLoudspeaker() {
    for (QProcess* process : {&m_recorder, &m_server}) {
      process->terminate();
      if (!process->waitForFinished(3000))
        process->kill();
      process->waitForFinished(3000);
    }
  }
  bool isStarted() const { return m_started; }
  bool isRecording() { return collect() > 0; }

  /// The loudest sample since the last call, of 32768.
  int takePeak() {
    collect();
    int peak = 0;
    for (qsizetype at = 0; at + 1 < m_recorded.size(); at += 2) {
      const auto sample =
          qint16(quint16(uchar(m_recorded[at])) | quint16(quint16(uchar(m_recorded[at + 1])) << 8));
      peak = std::max(peak, std::abs(int(sample)));
    }
    m_recorded.remove(0, m_recorded.size() & ~qsizetype(1));
    return peak;
  }

 private:
  qsizetype collect() {
    m_recorder.waitForReadyRead(50);
    m_recorded += m_recorder.readAllStandardOutput();
    return m_recorded.size();
  }

  QProcess m_server;
  QProcess m_recorder;
  QByteArray m_recorded;
  bool m_started = false;
};

} // namespace

class RecordedSoundTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void initTestCase() {
    m_loudspeaker = std::make_unique<RecordedLoudspeaker>(m_environment);
    QVERIFY(m_loudspeaker->isStarted());
    QTRY_VERIFY_WITH_TIMEOUT(m_loudspeaker->isRecording(), 10000);
  }
  void cleanupTestCase() { m_loudspeaker.reset(); }

  void silenceIsRecordedBeforeASound() { QCOMPARE(m_loudspeaker->takePeak(), 0); }

  void aSoundIsHeardAndEnds() {
    CanberraSoundPlayer player;
    player.play(sound("round_pop_click.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(m_loudspeaker->takePeak() > 3000, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(player.playing(), 0, 10000);
  }

  void aSecondSoundAfterSilenceIsHeardToo() {
    CanberraSoundPlayer player;
    for (const char* name : {"crystal_bell.wav", "bamboo_knock.wav"}) {
      player.play(sound(name));
      QTRY_VERIFY_WITH_TIMEOUT(m_loudspeaker->takePeak() > 3000, 10000);
      QTRY_COMPARE_WITH_TIMEOUT(player.playing(), 0, 10000);
      QTRY_COMPARE_WITH_TIMEOUT(m_loudspeaker->takePeak(), 0, 10000);
    }
  }

  void manyAtOnceAllEnd() {
    CanberraSoundPlayer player;
    for (int i = 0; i < 50; ++i)
      player.play(sound("harp_rise.wav"));
    QVERIFY(player.playing() <= CanberraSoundPlayer::kMostAtOnce);
    QTRY_VERIFY_WITH_TIMEOUT(m_loudspeaker->takePeak() > 3000, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(player.playing(), 0, 20000);
  }

  void goingAwayWhilePlayingEndsTheSound() {
    {
      CanberraSoundPlayer player;
      player.play(sound("singing_bowl.wav"));
      player.play(sound("door_chime.wav"));
      QTRY_VERIFY_WITH_TIMEOUT(m_loudspeaker->takePeak() > 3000, 10000);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_loudspeaker->takePeak(), 0, 10000);
  }

 private:
  TestEnvironment m_environment;
  std::unique_ptr<RecordedLoudspeaker> m_loudspeaker;
};

QTEST_GUILESS_MAIN(RecordedSoundTest)
#include "recorded_sound_test.moc"
