#include "app/application.h"
#include "cli/document_words.h"
#include "cli/run_command.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QStringList>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

// Only what lays out text loads fonts; it does not look for a display, nor for the desktop's theme.
std::unique_ptr<QCoreApplication> makeApplication(const QStringList& words, int& argc,
                                                  char** argv) {
  if (!tockwise::needsFonts(words))
    return std::make_unique<QCoreApplication>(argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qunsetenv("QT_QPA_PLATFORMTHEME");
  QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of no session
  argc = 1; // the words are the command's, not Qt's
  return std::make_unique<QGuiApplication>(argc, argv);
}

int runCommandLine(const QStringList& words, int argc, char** argv) {
  const auto application = makeApplication(words, argc, argv);
  const int status = tockwise::runCommand(words);
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
  for (int i = 1; i < argc; ++i) {
    words += QFile::decodeName(argv[i]);
    // Another file, or another text, than the one that was meant.
    if (QFile::encodeName(words.back()) != argv[i]) {
      return tockwise::failCommand(
          {tockwise::Error::Kind::Usage, QStringLiteral("%1 is not in UTF-8").arg(words.back())});
    }
  }
  if (tockwise::nameDocuments(words))
    return openDocuments(words, argc, argv);
  return runCommandLine(words, argc, argv);
}
