#include "platform/canberra_sound_player.h"
#include "support/log_lines.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>

using namespace tockwise;

namespace {

std::atomic<int> complaints = 0;

void countComplaints(QtMsgType, const QMessageLogContext& context, const QString& line) {
  if (qstrcmp(context.category, "tockwise") == 0 && line.startsWith(u"Sounds can't be played"))
    ++complaints;
}

/// A sound server that takes every connection and never says a word.
class SilentServer {
 public:
  explicit SilentServer(const QString& path) : m_socket(::socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    m_listening = ::bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                  ::listen(m_socket, 8) == 0;
  }
  ~SilentServer() { ::close(m_socket); }
  bool isListening() const { return m_listening; }
  bool hasVisitor() const {
    pollfd state{m_socket, POLLIN, 0};
    return ::poll(&state, 1, 0) == 1;
  }

 private:
  int m_socket;
  bool m_listening = false;
};

} // namespace

class CanberraSoundPlayerTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void init() {
    qputenv("CANBERRA_DRIVER", "pulse");
    qputenv("XDG_RUNTIME_DIR", m_environment.path(QStringLiteral("run")).toUtf8());
    qputenv("PULSE_SERVER",
            (QStringLiteral("unix:") + m_environment.path(QStringLiteral("nobody"))).toUtf8());
    QDir().mkpath(m_environment.path(QStringLiteral("run")));
    complaints = 0;
  }

  void aPlayerThatNeverPlaysStartsNothing() {
    const CanberraSoundPlayer player;
    QCOMPARE(player.playing(), 0);
  }

  void withoutASoundServerNothingHangsAndTheReasonIsLoggedOnce() {
    enableLogLines();
    const QtMessageHandler before = qInstallMessageHandler(countComplaints);
    {
      CanberraSoundPlayer player;
      for (int i = 0; i < 3; ++i) {
        player.play(QStringLiteral(TOCKWISE_SOUNDS "/round_pop_click.wav"));
        QTRY_COMPARE(player.playing(), 0);
      }
    }
    qInstallMessageHandler(before);
    QCOMPARE(complaints.load(), 1);
  }

  void aSoundServerThatNeverAnswersHoldsUpNothing() {
    const QString path = m_environment.path(QStringLiteral("silent"));
    const SilentServer server(path);
    QVERIFY(server.isListening());
    qputenv("PULSE_SERVER", (QStringLiteral("unix:") + path).toUtf8());
    { // whose end would wait for ever, to the suite's time limit
      CanberraSoundPlayer player;
      for (int i = 0; i < 100; ++i)
        player.play(QStringLiteral(TOCKWISE_SOUNDS "/round_pop_click.wav"));
      QVERIFY(player.playing() <= CanberraSoundPlayer::kMostAtOnce);
      QTRY_VERIFY(server.hasVisitor());
      QVERIFY(player.playing() > 0); // it waits for an answer
    }
  }

 private:
  TestEnvironment m_environment;
};

QTEST_GUILESS_MAIN(CanberraSoundPlayerTest)
#include "canberra_sound_player_test.moc"
