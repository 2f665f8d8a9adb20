// What firing a task does, and what the log says of it.
#include "engine/task_runner.h"
#include "support/fakes.h"
#include "support/log_lines.h"

#include <QTest>

#include <memory>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

struct Fixture {
  FakeWorkspace workspace;
  FakeScriptHost scripts;
  TaskRunner runner{workspace, scripts};
};

ScriptEnd ended(ScriptEnd::How how, int status = 0, const QString& output = {}) {
  ScriptEnd end;
  end.path = text("/home/me/tea.sh");
  end.how = how;
  end.exitStatus = status;
  end.output = output;
  return end;
}

} // namespace

class TaskRunnerTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Fixture> f;

 private Q_SLOTS:
  void init() { f = std::make_unique<Fixture>(); }

  void theBlankTaskIsTrueAndDoesNothing() {
    const LogLines log;
    Task blank; // whatever its other fields hold
    blank.type = Task::Script;
    blank.path = text("/bin/true");
    QVERIFY(f->runner.doTask(blank));
    QCOMPARE(f->workspace.calls, QStringList());
    QVERIFY(f->scripts.scripts.empty());
    QCOMPARE(log.lines(), QStringList());
  }

  void tasksAreCarriedOutByType_data() {
    QTest::addColumn<qint64>("type");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("call");
    QTest::newRow("address without scheme")
        << qint64(0) << text("example.org/a?b") << text("openURL http://example.org/a?b");
    QTest::newRow("address with it")
        << qint64(0) << text("http://example.org") << text("openURL http://example.org");
    QTest::newRow("just the scheme") << qint64(0) << text("http://") << text("openURL http://");
    QTest::newRow("secure address")
        << qint64(0) << text("https://example.org") << text("openURL http://https://example.org");
    QTest::newRow("the first seven in capitals")
        << qint64(0) << text("HTTP://example.org") << text("openURL http://HTTP://example.org");
    QTest::newRow("six of the seven")
        << qint64(0) << text("http:/example.org") << text("openURL http://http:/example.org");
    QTest::newRow("the seven after a blank")
        << qint64(0) << text(" http://example.org") << text("openURL http:// http://example.org");
    QTest::newRow("short") << qint64(0) << text("a") << text("openURL http://a");
    QTest::newRow("empty") << qint64(0) << QString() << text("openURL http://");
    QTest::newRow("media") << qint64(1) << text("/m/a b.ogg") << text("openMediaFile /m/a b.ogg");
    QTest::newRow("document") << qint64(2) << text("/d/$(x).pdf") << text("openFile /d/$(x).pdf");
    QTest::newRow("application") << qint64(3) << text("Calculator")
                                 << text("launchApplication Calculator");
  }
  void tasksAreCarriedOutByType() {
    QFETCH(qint64, type);
    QFETCH(QString, path);
    QFETCH(QString, call);
    QVERIFY(f->runner.doTask({false, type, path}));
    QCOMPARE(f->workspace.calls, QStringList{call});
    const LogLines log;
    f->workspace.succeeds = false;
    QVERIFY(!f->runner.doTask({false, type, path}));
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines()[0].contains(path));
    QVERIFY(f->scripts.scripts.empty());
  }

  void aScriptIsRunAndIsFalseAllTheSame() {
    const LogLines log;
    QVERIFY(!f->runner.doTask({false, Task::Script, text("/home/me/tea.sh")}));
    QCOMPARE(f->scripts.scripts.size(), size_t(1));
    QCOMPARE(f->scripts.scripts[0].path, text("/home/me/tea.sh"));
    QCOMPARE(log.lines(), QStringList()); // it did not fail
    QCOMPARE(f->workspace.calls, QStringList());
  }

  void aTypeThatThereIsNotIsFalse_data() {
    QTest::addColumn<qint64>("type");
    QTest::newRow("5") << qint64(5);
    QTest::newRow("-1") << qint64(-1);
    QTest::newRow("huge") << (qint64(1) << 32);
  }
  void aTypeThatThereIsNotIsFalse() {
    QFETCH(qint64, type);
    const LogLines log;
    QVERIFY(!f->runner.doTask({false, type, text("/bin/true")}));
    QCOMPARE(f->workspace.calls, QStringList());
    QVERIFY(f->scripts.scripts.empty());
    QCOMPARE(log.lines().size(), 1);
  }

  void theEndOfAScriptIsLoggedWithWhatItWrote() {
    f->runner.doTask({false, Task::Script, text("/home/me/tea.sh")});
    const LogLines log;
    f->scripts.end(1, ScriptEnd::How::Exited, text("one\ntwo\n"));
    QCOMPARE(log.lines(), (QStringList{text("Script /home/me/tea.sh has ended"),
                                       text("Script /home/me/tea.sh: one"),
                                       text("Script /home/me/tea.sh: two")}));
  }

  void endsAreToldApart_data() {
    QTest::addColumn<int>("how");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("expected");
    using How = ScriptEnd::How;
    QTest::newRow("status") << int(How::Exited) << 3 << text("has ended with status 3");
    QTest::newRow("crashed") << int(How::Crashed) << 11 << text("was ended by signal 11");
    QTest::newRow("time out") << int(How::TimeOut) << 0 << text("was ended: its time was up");
    QTest::newRow("stopped") << int(How::Stopped) << 0 << text("was stopped");
  }
  void endsAreToldApart() {
    QFETCH(int, how);
    QFETCH(int, status);
    QFETCH(QString, expected);
    QCOMPARE(scriptLogLines(ended(ScriptEnd::How(how), status)),
             QStringList{text("Script /home/me/tea.sh ") + expected});
  }

  void theReasonOfAFailedStartIsLogged() {
    ScriptEnd end = ended(ScriptEnd::How::NotStarted);
    end.reason = text("there is no such file");
    QCOMPARE(scriptLogLines(end), QStringList{text("Script /home/me/tea.sh could not be started: "
                                                   "there is no such file")});
  }

  void whatAScriptWroteCannotForgeLogLinesOrDriveATerminal() {
    ScriptEnd end = ended(ScriptEnd::How::Exited, 0,
                          text("a\r\n\x1b[2J\tb\rc\n\xc2\x9b"
                               "31m\n\xe2\x80\xae"
                               "abc\n\n"));
    end.path = text("/tmp/a\nScript b");
    const QString name = text("Script /tmp/a\u240aScript b");
    QCOMPARE(scriptLogLines(end),
             (QStringList{name + text(" has ended"), name + text(": a"),
                          name + text(": \u241b[2J b\u240dc"), name + text(": \ufffd31m"),
                          name + text(": \ufffdabc"), name + text(": ")}));
  }
};

QTEST_GUILESS_MAIN(TaskRunnerTest)
#include "task_runner_test.moc"
