#include "app/application.h"
#include "cli/run_command.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  std::signal(SIGXFSZ, SIG_IGN); // a limit on file sizes is an error to be told, not our end
  if (argc <= 1)
    return tockwise::runApplication(argc, argv);
  const QCoreApplication application(argc, argv);
  const int status = tockwise::runCommand(QCoreApplication::arguments().mid(1));
  // Everything is written and closed by now. Leaving here, before Qt's statics are taken down,
  // keeps its bus thread from complaining on stderr about a message that comes meanwhile.
  std::fflush(nullptr);
  std::_Exit(status);
}
