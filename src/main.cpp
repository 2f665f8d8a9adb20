#include "app/application.h"
#include "cli/run_command.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
  if (argc <= 1)
    return tockwise::runApplication(argc, argv);
  const QCoreApplication application(argc, argv);
  return tockwise::runCommand(QCoreApplication::arguments().mid(1));
}
