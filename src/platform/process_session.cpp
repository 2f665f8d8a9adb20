#include "platform/process_session.h"

#include <QByteArray>
#include <QDirIterator>
#include <QFile>

#include <csignal>

namespace tockwise {
namespace {

/// The session of a process that is not dead, or -1.
pid_t sessionOf(const QString& pid) {
  QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
  if (!file.open(QIODevice::ReadOnly))
    return -1;
  const QByteArray line = file.read(4096);
  // "pid (name) state parent group session …"; the name may hold anything, brackets included.
  const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
  if (fields.size() < 4 || fields[0] == "Z" || fields[0] == "X")
    return -1;
  return fields[3].toInt();
}

} // namespace

std::vector<pid_t> processesOfSession(pid_t leader) {
  std::vector<pid_t> members;
  QDirIterator processes(QStringLiteral("/proc"), QDir::Dirs | QDir::NoDotAndDotDot);
  while (processes.hasNext()) {
    processes.next();
    bool isNumber = false;
    const pid_t pid = processes.fileName().toInt(&isNumber);
    if (isNumber && sessionOf(processes.fileName()) == leader)
      members.push_back(pid);
  }
  return members;
}

bool signalSession(pid_t leader, int signal) {
  const auto members = processesOfSession(leader);
  for (const pid_t pid : members)
    ::kill(pid, signal);
  return !members.empty();
}

} // namespace tockwise
