// Carrying out the task of a reminder that fires, and telling the log how it went.
#pragma once

#include "ports/script_host.h"
#include "ports/workspace.h"
#include "store/reminder.h"

#include <QObject>
#include <QStringList>

namespace tockwise {

/// Main thread. The ports outlive it.
class TaskRunner final : public QObject {
  Q_OBJECT
 public:
  TaskRunner(Workspace& workspace, ScriptHost& scripts, QObject* parent = nullptr);

  /// Carries out the task. True for a blank one and for one whose application was started; a
  /// script gives false whatever it does, as does a type that there is not. Nothing is shown: a
  /// task that failed is logged, and so is the end of each script with what it wrote.
  bool doTask(const Task& task);

 private:
  bool open(const Task& task);

  Workspace& m_workspace;
  ScriptHost& m_scripts;
};

/// What the log says of a script that ended: how, and a line for each that it wrote, with its
/// control characters shown as such.
QStringList scriptLogLines(const ScriptEnd& end);

} // namespace tockwise
