// Scripts as child processes: real ones.
#include "platform/process_script_host.h"
#include "support/test_environment.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <memory>

using namespace tockwise;

namespace {

using How = ScriptEnd::How;
using namespace std::chrono_literals;

constexpr ScriptRun::Limits kPlenty{60s, 10s, 64 * 1024};
constexpr QFileDevice::Permissions kExecutable =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
constexpr QFileDevice::Permissions kReadable = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

bool isAlive(pid_t pid) {
  QFile file(text("/proc/%1/stat").arg(pid));
  if (!file.open(QIODevice::ReadOnly))
    return false;
  const QByteArray line = file.readAll();
  return !line.mid(line.lastIndexOf(')')).startsWith(") Z");
}

} // namespace

class ScriptHostTest : public QObject {
  Q_OBJECT

  std::unique_ptr<TestEnvironment> m_environment;
  FakeClock m_clock{Date{790000000}};
  std::unique_ptr<ProcessScriptHost> m_host;
  std::vector<ScriptEnd> m_ends;

  void makeHost(ScriptRun::Limits limits) {
    m_ends.clear();
    m_host = std::make_unique<ProcessScriptHost>(m_clock, limits);
    connect(m_host.get(), &ScriptHost::finished, this,
            [this](const ScriptEnd& end) { m_ends.push_back(end); });
  }
  QString home(const QString& name) const { return m_environment->path(text("home/") + name); }
  QString script(const QByteArray& content, const QString& name = text("script"),
                 QFileDevice::Permissions permissions = kExecutable) {
    const QString path = home(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
      qFatal("a script can't be written");
    file.write(content);
    file.close();
    file.setPermissions(permissions);
    return path;
  }
  ScriptEnd endOf(const QString& path) {
    const size_t before = m_ends.size();
    m_host->run(path);
    if (!QTest::qWaitFor([&] { return m_ends.size() > before; }, 20000))
      qFatal("the script did not end");
    return m_ends.back();
  }
  /// The number that a script has written into a file of HOME.
  pid_t pidFrom(const char* name) {
    pid_t pid = 0;
    const bool written = QTest::qWaitFor([&] {
      QFile file(home(text(name)));
      if (!file.open(QIODevice::ReadOnly))
        return false;
      const QByteArray line = file.readAll();
      pid = line.trimmed().toInt();
      return line.endsWith('\n');
    });
    return written ? pid : -1;
  }

 private Q_SLOTS:
  void init() {
    m_environment = std::make_unique<TestEnvironment>();
    makeHost(kPlenty);
  }
  void cleanup() {
    m_host.reset();
    m_environment.reset();
  }

  void aScriptRunsAndItsEndIsTold() {
    QSignalSpy started(m_host.get(), &ScriptHost::started);
    const QString path = script("#!/bin/sh\necho out\necho err >&2\nexit 3\n");
    const quint64 id = m_host->run(path);
    QCOMPARE(id, quint64(1));
    QVERIFY(m_ends.empty() && started.isEmpty()); // it does not wait
    const auto running = m_host->running();
    QCOMPARE(running.size(), size_t(1));
    QCOMPARE(running[0].path, path);
    QCOMPARE(running[0].started, m_clock.now());
    QCOMPARE(running[0].ends, m_clock.now().plusSeconds(60));
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QCOMPARE(started.size(), 1);
    QCOMPARE(m_ends[0].id, id);
    QCOMPARE(m_ends[0].path, path);
    QCOMPARE(m_ends[0].how, How::Exited);
    QCOMPARE(m_ends[0].exitStatus, 3);
    QCOMPARE(m_ends[0].output, text("out\nerr\n"));
    QVERIFY(m_host->running().empty());
    QCOMPARE(m_host->run(path), quint64(2));
  }

  void aPathIsNeverReadByAShell_data() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"with blanks and 'quotes\"", "$(touch made) `touch made`;touch made",
                             "-c", "a&b|c>d", "line\nfeed", "*", "ümlaut"})
      QTest::newRow(name) << text(name);
  }
  void aPathIsNeverReadByAShell() {
    QFETCH(QString, name);
    for (const auto permissions : {kExecutable, kReadable}) {
      for (const char* content : {"#!/bin/sh\nprintf '%s' \"$0\"\n", "printf '%s' \"$0\"\n"}) {
        const QString path = script(content, name, permissions);
        const ScriptEnd end = endOf(path);
        QCOMPARE(end.how, How::Exited);
        QCOMPARE(end.output, path);
      }
    }
    QVERIFY(!QFile::exists(home(text("made"))));
  }

  void whatRunsAScript_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("executable");
    QTest::addColumn<QString>("output");
    for (const bool executable : {true, false}) {
      const auto row = [&](const char* name, const char* content, const char* output) {
        QTest::addRow("%s%s", name, executable ? ", executable" : "")
            << QByteArray(content) << executable << text(output);
      };
      row("interpreter", "#!/bin/cat\nhello\n", "#!/bin/cat\nhello\n");
      row("interpreter after blanks", "#! \t/bin/cat  \nhello\n", "#! \t/bin/cat  \nhello\n");
      row("through env", "#!/usr/bin/env python3\nprint(6 * 7)\n", "42\n");
      row("no interpreter line", "echo shell $#\n", "shell 0\n");
      row("a comment first", "# !/bin/cat\necho shell\n", "shell\n");
      row("no line feed at all", "echo shell", "shell\n");
      row("empty", "", "");
    }
    // The rest of the line is one argument, as the system has it.
    for (const bool executable : {true, false})
      QTest::addRow("one argument%s", executable ? ", executable" : "")
          << QByteArray("#!/bin/sed s/x y/found/\nx y\n") << executable
          << text("#!/bin/sed s/found/found/\nfound\n");
  }
  void whatRunsAScript() {
    QFETCH(QByteArray, content);
    QFETCH(bool, executable);
    const ScriptEnd end = endOf(script(content, text("s"), executable ? kExecutable : kReadable));
    QCOMPARE(end.how, How::Exited);
    QTEST(end.output, "output");
  }

  void aProgramMayBeAScript() {
    QVERIFY(QFile::copy(text("/bin/pwd"), home(text("program"))));
    const ScriptEnd end = endOf(home(text("program")));
    QCOMPARE(end.output.trimmed(), QDir(home({})).canonicalPath()); // it runs in HOME
  }

  void aRelativePathCountsFromHome() {
    script("echo here\n", text("relative.sh"));
    QCOMPARE(endOf(text("relative.sh")).output, text("here\n"));
  }

  void thereIsNothingToReadAndItLeadsItsOwnSession() {
    const ScriptEnd end =
        endOf(script("cat\nps -o sid= -p $$\necho $$\n# ends at once: its input is empty\n"));
    QCOMPARE(end.how, How::Exited);
    const QStringList lines = end.output.split(u'\n');
    QCOMPARE(lines[0].trimmed(), lines[1].trimmed());
  }

  void whatCannotBeStartedSaysWhy_data() {
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << text("missing") << text("there is no such file");
    QTest::newRow("folder") << text("folder") << text("it is not a file");
    QTest::newRow("empty") << text("empty") << text("it has no path");
    QTest::newRow("no interpreter")
        << text("lost") << text("its interpreter \"/no/such/interpreter\" is not there");
    QTest::newRow("an interpreter without a name")
        << text("nameless") << text("its interpreter \"\" is not there");
  }
  void whatCannotBeStartedSaysWhy() {
    QFETCH(QString, what);
    QString path = home(what);
    if (what == u"folder")
      path = home({});
    else if (what == u"empty")
      path.clear();
    else if (what == u"lost")
      script("#!/no/such/interpreter -x\n", what);
    else if (what == u"nameless")
      script("#!\necho no\n", what, kReadable);
    QSignalSpy started(m_host.get(), &ScriptHost::started);
    QVERIFY(m_host->run(path) > 0);
    QVERIFY(m_ends.empty());
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QCOMPARE(m_ends[0].how, How::NotStarted);
    QTEST(m_ends[0].reason, "reason");
    QVERIFY(started.isEmpty());
    QVERIFY(m_host->running().empty());
  }

  void aProgramThatTheSystemRefusesIsNotStarted() {
    const ScriptEnd end = endOf(script("\x7f"
                                       "ELF is what it says and is not\n"));
    QCOMPARE(end.how, How::NotStarted);
    QVERIFY(!end.reason.isEmpty());
  }

  void aScriptThatDiesOfASignalCrashed() {
    const ScriptEnd end = endOf(script("echo before\nkill -SEGV $$\n"));
    QCOMPARE(end.how, How::Crashed);
    QCOMPARE(end.exitStatus, SIGSEGV);
    QCOMPARE(end.output, text("before\n"));
  }

  void whenItsTimeIsUpItAndItsChildrenAreEnded() {
    makeHost({300ms, 10s, 1024});
    const QString path = script("echo begun\nsleep 600 & echo $! > child\nsleep 600\n");
    m_host->run(path);
    const pid_t child = pidFrom("child");
    QVERIFY(child > 0);
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QCOMPARE(m_ends[0].how, How::TimeOut);
    QCOMPARE(m_ends[0].output, text("begun\n"));
    QVERIFY(!isAlive(child));
  }

  void stoppingEndsChildrenInGroupsOfTheirOwn() {
    m_host->run(script("#!/bin/bash\nset -m\nsleep 600 &\necho $! > child\nwait\n"));
    const pid_t child = pidFrom("child");
    QVERIFY(child > 0 && isAlive(child));
    m_host->stop(1);
    m_host->stop(1);
    m_host->stop(77);
    QVERIFY(m_ends.empty());
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QCOMPARE(m_ends[0].how, How::Stopped);
    QVERIFY(!isAlive(child));
  }

  void aScriptIsAskedBeforeItIsKilled() {
    m_host->run(script("trap 'echo cleaned up; exit 0' TERM\necho 1 > ready\n"
                       "while :; do sleep 0.05; done\n"));
    QVERIFY(pidFrom("ready") == 1);
    m_host->stop(1);
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QCOMPARE(m_ends[0].how, How::Stopped);
    QVERIFY(m_ends[0].output.endsWith(u"cleaned up\n"));
  }

  void whoDoesNotListenIsKilledAfterTheGrace() {
    makeHost({60s, 100ms, 1024});
    m_host->run(script("trap '' TERM\nsh -c 'trap \"\" TERM; echo $$ > child; while :; do sleep "
                       "0.05; done' &\nwhile :; do sleep 0.05; done\n"));
    const pid_t child = pidFrom("child");
    QVERIFY(child > 0);
    m_host->stop(1);
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QCOMPARE(m_ends[0].how, How::Stopped);
    QVERIFY(!isAlive(child));
  }

  void aDeafChildOfAListeningScriptIsKilledToo() {
    makeHost({60s, 100ms, 1024});
    m_host->run(script("sh -c 'trap \"\" TERM; echo $$ > child; while :; do sleep 0.05; done' &\n"
                       "sleep 600\n"));
    const pid_t child = pidFrom("child");
    QVERIFY(child > 0);
    m_host->stop(1);
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QVERIFY(!isAlive(child));
  }

  void stoppingAtOnceStopsIt() {
    const quint64 id = m_host->run(script("sleep 600\n"));
    m_host->stop(id);
    QTRY_COMPARE(m_ends.size(), size_t(1));
    QCOMPARE(m_ends[0].how, How::Stopped);
  }

  void whatAFinishedScriptLeavesBehindIsLetBeAndMayWrite() {
    const ScriptEnd end =
        endOf(script("(while [ ! -e go ]; do sleep 0.02; done; echo a; echo b && echo $$ > wrote; "
                     "sleep 600) &\necho $! > child\necho started\n"));
    QCOMPARE(end.how, How::Exited);
    QCOMPARE(end.output, text("started\n"));
    script({}, text("go"));
    QVERIFY(pidFrom("wrote") > 0); // it did not end for want of a reader
    const pid_t child = pidFrom("child");
    QVERIFY(isAlive(child));
    ::kill(child, SIGKILL);
  }

  void aFloodOfOutputIsCutInTheMiddle() {
    makeHost({60s, 10s, 1000});
    const ScriptEnd end = endOf(
        script("echo first\ni=0\nwhile [ $i -lt 3000 ]; do echo 0123456789abcdef0123456789abcdef; "
               "i=$((i+1)); done\necho last\n"));
    QCOMPARE(end.how, How::Exited);
    QVERIFY(end.output.startsWith(u"first\n"));
    QVERIFY(end.output.endsWith(u"last\n"));
    QVERIFY(end.output.contains(u"bytes left out"));
    QVERIFY(end.output.size() < 1100);
  }

  void outputThatIsNoTextIsShownAsFarAsItIs() {
    const ScriptEnd end = endOf(script("printf 'a\\377\\000b\\n'\n"));
    QCOMPARE(end.output, QString(text("a\ufffd") + QChar(u'\0') + text("b\n")));
  }

  void aHostThatGoesAwayEndsWhatRuns() {
    m_host->run(script("sleep 600 & echo $! > child\nwait\n"));
    m_host->run(
        script("trap '' TERM\necho $$ > deaf\nwhile :; do sleep 0.05; done\n", text("second")));
    const pid_t child = pidFrom("child");
    const pid_t deaf = pidFrom("deaf");
    QVERIFY(isAlive(child) && isAlive(deaf));
    m_host.reset();
    QTRY_VERIFY(!isAlive(child) && !isAlive(deaf));
    QVERIFY(m_ends.empty());
  }

  void aProgramThatIsKilledLeavesNoScriptRunning() {
    const QString path = script("echo $$ > leader\nwhile :; do sleep 0.05; done\n");
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(), {text("--host"), path});
    const pid_t leader = pidFrom("leader");
    QVERIFY(leader > 0 && isAlive(leader));
    program.kill();
    QVERIFY(program.waitForFinished());
    QTRY_VERIFY(!isAlive(leader));
  }

  void theHostMayGoAwayWithinItsOwnSignal() {
    connect(m_host.get(), &ScriptHost::finished, this, [this] {
      QMetaObject::invokeMethod(
          this, [this] { m_host.reset(); }, Qt::QueuedConnection);
    });
    m_host->run(script("exit 0\n"));
    QTRY_VERIFY(!m_host);
    QCOMPARE(m_ends.size(), size_t(1));
  }

  void scriptsRunSideBySide() {
    const QString path = script("while [ ! -e go ]; do sleep 0.02; done\n");
    for (int i = 0; i < 5; ++i)
      m_host->run(path);
    QCOMPARE(m_host->running().size(), size_t(5));
    QCOMPARE(m_host->running()[4].id, quint64(5));
    script({}, text("go"));
    QTRY_COMPARE(m_ends.size(), size_t(5));
    for (const ScriptEnd& end : m_ends)
      QCOMPARE(end.how, How::Exited);
  }
};

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (argc == 3 && QString::fromLocal8Bit(argv[1]) == u"--host") { // a program to be killed
    const SystemClock clock;
    ProcessScriptHost host(clock, kPlenty);
    host.run(QFile::decodeName(argv[2]));
    return QCoreApplication::exec();
  }
  ScriptHostTest test;
  return QTest::qExec(&test, argc, argv);
}

#include "script_host_test.moc"
