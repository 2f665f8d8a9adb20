// make_command_docs FOLDER TEMPLATE VERSION DATE: writes what tells of the command line into
// FOLDER, laid out as share/ of an installation: completions for bash, zsh and fish, and the man
// page made of TEMPLATE, with the commands in place of @COMMANDS@.

#include "generators.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <cstdio>

namespace {

bool write(const QDir& share, const QString& path, const QString& text) {
  if (!share.mkpath(path.section(u'/', 0, -2)))
    return false;
  QSaveFile file(share.filePath(path));
  return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.commit();
}

QString manPage(QString text, const QString& version, const QString& date) {
  return text.replace(QStringLiteral("@COMMANDS@\n"), tockwise::manPageCommands())
      .replace(QStringLiteral("@VERSION@"), version)
      .replace(QStringLiteral("@DATE@"), date);
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fputs("usage: make_command_docs FOLDER TEMPLATE VERSION DATE\n", stderr);
    return 2;
  }
  QFile page(QString::fromLocal8Bit(argv[2]));
  if (!page.open(QIODevice::ReadOnly)) {
    std::fprintf(stderr, "make_command_docs: %s cannot be read\n", argv[2]);
    return 1;
  }
  const QDir share(QString::fromLocal8Bit(argv[1]));
  const QString text = manPage(QString::fromUtf8(page.readAll()), QString::fromLocal8Bit(argv[3]),
                               QString::fromLocal8Bit(argv[4]));
  if (write(share, QStringLiteral("man/man1/tockwise.1"), text) &&
      write(share, QStringLiteral("bash-completion/completions/tockwise"),
            tockwise::bashCompletion()) &&
      write(share, QStringLiteral("zsh/site-functions/_tockwise"), tockwise::zshCompletion()) &&
      write(share, QStringLiteral("fish/vendor_completions.d/tockwise.fish"),
            tockwise::fishCompletion()))
    return 0;
  std::fprintf(stderr, "make_command_docs: %s cannot be written\n", argv[1]);
  return 1;
}
