// One run of a script, from its start to the end of everything it started.
#pragma once

#include "platform/output_reader.h"
#include "ports/script_host.h"

#include <QPointer>
#include <QProcess>
#include <QTimer>

#include <chrono>
#include <optional>

namespace tockwise {

/// Main thread. The script runs in a session of its own, in HOME, with nothing to read, and both
/// of its channels kept. Destruction kills it and what it started.
class ScriptRun final : public QObject {
  Q_OBJECT
 public:
  struct Limits {
    std::chrono::milliseconds time;
    std::chrono::milliseconds grace; // between asking and killing
    qsizetype mostOutput;            // bytes
  };
  ScriptRun(RunningScript script, Limits limits);
  ~ScriptRun() override;
  Q_DISABLE_COPY_MOVE(ScriptRun)

  const RunningScript& script() const { return m_script; }
  void start();
  /// Asks it to end, and kills it after the grace.
  void end(ScriptEnd::How how);

 Q_SIGNALS:
  void started();
  /// Once, and never within start() or end().
  void finished(const tockwise::ScriptEnd& end);

 private:
  void processEnded(int status, QProcess::ExitStatus how);
  void failedToStart(const QString& reason);
  void lookForSurvivors();
  void report(ScriptEnd::How how, int status = 0, const QString& reason = {});

  RunningScript m_script;
  Limits m_limits;
  QProcess m_process;
  QPointer<OutputReader> m_output;
  QTimer m_timeUp;
  QTimer m_survivors; // while it is being ended
  QTimer m_grace;
  std::optional<ScriptEnd::How> m_ending;
  pid_t m_session = 0; // of its first process
  int m_rounds = 0;    // of killing
  bool m_reported = false;
};

} // namespace tockwise
