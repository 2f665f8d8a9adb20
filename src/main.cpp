#include "app/application.h"
#include "cli/document_words.h"
#include "cli/run_command.h"

#include <QCoreApplication>
#include <QFile>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

int runCommandLine(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const int status = tockwise::runCommand(QCoreApplication::arguments().mid(1));
  // Everything is written and closed by now. Leaving here, before Qt's statics are taken down,
  // keeps its bus thread from complaining on stderr about a message that comes meanwhile.
  std::fflush(nullptr);
  std::_Exit(status);
}

int openDocuments(const QStringList& words, int argc, char** argv) {
  const auto paths = tockwise::documentPaths(words);
  if (paths)
    return tockwise::runApplication(argc, argv, *paths);
  return tockwise::failCommand(paths.error());
}

} // namespace

int main(int argc, char** argv) {
  std::signal(SIGXFSZ, SIG_IGN); // a limit on file sizes is an error to be told, not our end
  if (argc <= 1)
    return tockwise::runApplication(argc, argv);
  QStringList words;
  for (int i = 1; i < argc; ++i)
    words += QFile::decodeName(argv[i]);
  if (tockwise::nameDocuments(words))
    return openDocuments(words, argc, argv);
  return runCommandLine(argc, argv);
}
