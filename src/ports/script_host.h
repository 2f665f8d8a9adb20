// Running a script file in the background, by its own interpreter, for a limited time.
#pragma once

#include "base/date.h"

#include <QObject>
#include <QString>

#include <vector>

namespace tockwise {

/// One script that runs.
struct RunningScript {
  quint64 id = 0; // counted from 1, never used again
  QString path;
  Date started;
  Date ends; // when its time is up
};

/// How a run ended.
struct ScriptEnd {
  enum class How { Exited, Crashed, TimeOut, Stopped, NotStarted };
  quint64 id = 0;
  QString path;
  How how = How::Exited;
  int exitStatus = 0; // of Exited; of Crashed, the signal
  QString output;     // what it wrote, both channels, cut in the middle when it is long
  QString reason;     // of NotStarted, one sentence
};

/// Main thread.
class ScriptHost : public QObject {
  Q_OBJECT
 public:
  using QObject::QObject;
  /// Starts it; the id of the run, which ends with finished() in any case, also when it could not
  /// be started. Never waits: neither signal comes before run() has returned.
  virtual quint64 run(const QString& path) = 0;
  /// The oldest first.
  virtual std::vector<RunningScript> running() const = 0;
  /// Ends it and what it started: first asks, then kills. An id that does not run is ignored.
  virtual void stop(quint64 id) = 0;

 Q_SIGNALS:
  void started(const tockwise::RunningScript& script);
  void finished(const tockwise::ScriptEnd& end);
};

} // namespace tockwise
