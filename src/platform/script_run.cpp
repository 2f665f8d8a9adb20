#include "platform/script_run.h"

#include "platform/process_session.h"
#include "platform/script_command.h"

#include <QDir>
#include <QElapsedTimer>
#include <QThread>

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace tockwise {
namespace {

constexpr std::chrono::milliseconds kSurvivorCheck{50};
constexpr int kMostKills =
    40; // rounds; what is left then cannot be killed (it hangs in the kernel)
constexpr qint64 kLastGrace = 200; // ms, when the program ends

} // namespace

ScriptRun::ScriptRun(RunningScript script, Limits limits)
    : m_script(std::move(script)), m_limits(limits) {
  m_timeUp.setSingleShot(true);
  m_timeUp.setInterval(limits.time);
  m_grace.setSingleShot(true);
  m_grace.setInterval(limits.grace);
  m_survivors.setInterval(kSurvivorCheck);
  connect(&m_timeUp, &QTimer::timeout, this, [this] { end(ScriptEnd::How::TimeOut); });
  connect(&m_survivors, &QTimer::timeout, this, &ScriptRun::lookForSurvivors);
  connect(&m_process, &QProcess::started, this, &ScriptRun::started);
  connect(&m_process, &QProcess::finished, this, &ScriptRun::processEnded);
  // Queued: a process that cannot even be forked says so within start().
  connect(
      &m_process, &QProcess::errorOccurred, this,
      [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
          failedToStart(m_process.errorString());
      },
      Qt::QueuedConnection);
}

ScriptRun::~ScriptRun() {
  m_process.disconnect(this);
  if (m_output)
    m_output->drain();
  if (m_reported || m_session == 0)
    return;
  const bool leaderRuns = m_process.state() != QProcess::NotRunning;
  if (leaderRuns)
    ::kill(m_session, SIGTERM); // it may not have come to its session yet
  bool any = signalSession(m_session, SIGTERM) || leaderRuns;
  QElapsedTimer waited;
  for (waited.start(); any && waited.elapsed() < kLastGrace; QThread::msleep(5)) {
    any = !processesOfSession(m_session).empty();
  }
  for (int round = 0; round < kMostKills && signalSession(m_session, SIGKILL); ++round)
    QThread::msleep(1);
  m_process.waitForFinished(int(kLastGrace));
}

void ScriptRun::start() {
  const auto command = commandOfScript(m_script.path);
  if (!command) {
    QMetaObject::invokeMethod(
        this, [this, reason = command.error().message] { failedToStart(reason); },
        Qt::QueuedConnection);
    return;
  }
  m_output = new OutputReader(m_limits.mostOutput);
  const int writingEnd = m_output->writingEnd();
  m_process.setProgram(command->program);
  m_process.setArguments(command->arguments);
  m_process.setWorkingDirectory(QDir::home().exists() ? QDir::homePath() : QStringLiteral("/"));
  m_process.setStandardInputFile(QProcess::nullDevice());
  m_process.setStandardOutputFile(QProcess::nullDevice());
  m_process.setStandardErrorFile(QProcess::nullDevice());
  // In the child: only what is safe after a fork.
  m_process.setChildProcessModifier([writingEnd] {
    ::setsid();
    ::prctl(PR_SET_PDEATHSIG, SIGTERM); // should we be killed: nobody would end it then
    if (writingEnd >= 0) {
      ::dup2(writingEnd, STDOUT_FILENO);
      ::dup2(writingEnd, STDERR_FILENO);
    }
  });
  m_process.start(QIODevice::ReadOnly);
  m_session = pid_t(m_process.processId());
  m_output->closeWritingEnd();
  m_timeUp.start();
}

void ScriptRun::end(ScriptEnd::How how) {
  if (m_ending || m_reported || m_session == 0)
    return;
  m_ending = how;
  m_timeUp.stop();
  if (m_process.state() != QProcess::NotRunning)
    ::kill(m_session, SIGTERM);
  signalSession(m_session, SIGTERM);
  m_grace.start();
  m_survivors.start();
}

void ScriptRun::processEnded(int status, QProcess::ExitStatus how) {
  if (m_ending) { // what it started may still be ending
    lookForSurvivors();
    return;
  }
  report(how == QProcess::NormalExit ? ScriptEnd::How::Exited : ScriptEnd::How::Crashed, status);
}

void ScriptRun::lookForSurvivors() {
  const bool leaderRuns = m_process.state() != QProcess::NotRunning;
  if (!leaderRuns && processesOfSession(m_session).empty()) {
    report(*m_ending);
  } else if (!m_grace.isActive()) {
    if (leaderRuns)
      ::kill(m_session, SIGKILL);
    signalSession(m_session, SIGKILL);
    if (++m_rounds > kMostKills)
      report(*m_ending);
  }
}

void ScriptRun::failedToStart(const QString& reason) {
  report(ScriptEnd::How::NotStarted, 0, reason);
}

void ScriptRun::report(ScriptEnd::How how, int status, const QString& reason) {
  if (std::exchange(m_reported, true))
    return;
  m_timeUp.stop();
  m_survivors.stop();
  m_grace.stop();
  ScriptEnd end;
  end.id = m_script.id;
  end.path = m_script.path;
  end.how = how;
  end.exitStatus = status;
  end.reason = reason;
  if (m_output) {
    end.output = m_output->text();
    m_output->drain();
  }
  Q_EMIT finished(end);
}

} // namespace tockwise
