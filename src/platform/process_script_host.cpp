#include "platform/process_script_host.h"

#include <algorithm>

namespace tockwise {

ProcessScriptHost::ProcessScriptHost(const Clock& clock, ScriptRun::Limits limits)
    : m_clock(clock), m_limits(limits) {}

ProcessScriptHost::~ProcessScriptHost() = default;

quint64 ProcessScriptHost::run(const QString& path) {
  RunningScript script;
  script.id = ++m_lastId;
  script.path = path;
  script.started = m_clock.now();
  script.ends = script.started.plusSeconds(double(m_limits.time.count()) / 1000);
  auto run = std::make_unique<ScriptRun>(script, m_limits);
  connect(run.get(), &ScriptRun::started, this, [this, script] { Q_EMIT started(script); });
  connect(run.get(), &ScriptRun::finished, this, &ProcessScriptHost::runFinished);
  ScriptRun* const starting = run.get();
  m_runs.push_back(std::move(run));
  starting->start();
  return script.id;
}

std::vector<RunningScript> ProcessScriptHost::running() const {
  std::vector<RunningScript> scripts;
  for (const auto& run : m_runs)
    scripts.push_back(run->script());
  return scripts;
}

void ProcessScriptHost::stop(quint64 id) {
  for (const auto& run : m_runs) {
    if (run->script().id == id)
      run->end(ScriptEnd::How::Stopped);
  }
}

void ProcessScriptHost::runFinished(const ScriptEnd& end) {
  const auto ended = std::find_if(m_runs.begin(), m_runs.end(),
                                  [&](const auto& run) { return run->script().id == end.id; });
  if (ended == m_runs.end())
    return;
  ended->release()->deleteLater(); // it is emitting
  m_runs.erase(ended);
  Q_EMIT finished(end);
}

} // namespace tockwise
