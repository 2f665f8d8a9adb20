#include "engine/task_runner.h"

#include "base/harmless_text.h"
#include "base/log.h"

namespace tockwise {
namespace {

constexpr QStringView kWebPrefix = u"http://";

/// An address with any other scheme gets the prefix too: the rules have it so.
QString webAddress(const QString& path) {
  return path.startsWith(kWebPrefix) ? path : kWebPrefix.toString() + path;
}

QString endText(const ScriptEnd& end) {
  switch (end.how) {
  case ScriptEnd::How::Exited:
    return end.exitStatus == 0 ? QStringLiteral("has ended")
                               : QStringLiteral("has ended with status %1").arg(end.exitStatus);
  case ScriptEnd::How::Crashed:
    return QStringLiteral("was ended by signal %1").arg(end.exitStatus);
  case ScriptEnd::How::TimeOut:
    return QStringLiteral("was ended: its time was up");
  case ScriptEnd::How::Stopped:
    return QStringLiteral("was stopped");
  case ScriptEnd::How::NotStarted:
    return QStringLiteral("could not be started: %1").arg(harmlessLine(end.reason));
  }
  return {};
}

} // namespace

QStringList scriptLogLines(const ScriptEnd& end) {
  const QString name = QStringLiteral("Script %1").arg(harmlessLine(end.path));
  QStringList lines{name + u' ' + endText(end)};
  QStringList written = end.output.split(u'\n');
  if (written.last().isEmpty())
    written.removeLast();
  for (QString& line : written) {
    if (line.endsWith(u'\r'))
      line.chop(1);
    lines += name + QStringLiteral(": ") + harmlessLine(line);
  }
  return lines;
}

TaskRunner::TaskRunner(Workspace& workspace, ScriptHost& scripts, QObject* parent)
    : QObject(parent), m_workspace(workspace), m_scripts(scripts) {
  connect(&m_scripts, &ScriptHost::finished, this, [](const ScriptEnd& end) {
    for (const QString& line : scriptLogLines(end))
      logLine(line);
  });
}

bool TaskRunner::doTask(const Task& task) {
  if (task.blank)
    return true;
  if (task.type == Task::Script) {
    m_scripts.run(task.path);
    return false;
  }
  const bool done = open(task);
  if (!done) {
    logLine(QStringLiteral("A task of type %1 could not be carried out: %2")
                .arg(task.type)
                .arg(harmlessLine(task.path)));
  }
  return done;
}

bool TaskRunner::open(const Task& task) {
  switch (task.type) {
  case Task::WebAddress:
    return m_workspace.openURL(webAddress(task.path));
  case Task::Media:
    return m_workspace.openMediaFile(task.path);
  case Task::Document:
    return m_workspace.openFile(task.path);
  case Task::Application:
    return m_workspace.launchApplication(task.path);
  default:
    return false;
  }
}

} // namespace tockwise
