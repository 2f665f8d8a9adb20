// Scripts as child processes.
#pragma once

#include "base/clock.h"
#include "platform/script_run.h"

#include <memory>

namespace tockwise {

/// Main thread. See commandOfScript() for what runs a file. A script may run for a limited time;
/// then, or when it is stopped, it and everything it started is asked to end (TERM) and after a
/// grace killed. What a script that ended by itself has left behind is let be. Destruction ends
/// what still runs, without finished().
class ProcessScriptHost final : public ScriptHost {
  Q_OBJECT
 public:
  static constexpr std::chrono::milliseconds kTimeLimit = std::chrono::minutes(5);
  static constexpr std::chrono::milliseconds kGrace = std::chrono::seconds(3);
  static constexpr qsizetype kMostOutput = 65536; // bytes kept of one run

  /// The clock is for telling when a script began and will be ended, and outlives the host.
  explicit ProcessScriptHost(const Clock& clock,
                             ScriptRun::Limits limits = {kTimeLimit, kGrace, kMostOutput});
  ~ProcessScriptHost() override;

  quint64 run(const QString& path) override;
  std::vector<RunningScript> running() const override;
  void stop(quint64 id) override;

 private:
  void runFinished(const ScriptEnd& end);

  const Clock& m_clock;
  ScriptRun::Limits m_limits;
  quint64 m_lastId = 0;
  std::vector<std::unique_ptr<ScriptRun>> m_runs;
};

} // namespace tockwise
