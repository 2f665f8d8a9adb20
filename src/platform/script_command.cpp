#include "platform/script_command.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <optional>

namespace tockwise {
namespace {

constexpr qint64 kLongestFirstLine = 4096; // bytes; the system itself heeds some 255
constexpr char kProgramMagic[] = "\x7f"
                                 "ELF";

bool mayExecute(const QString& path) {
  return ::access(QFile::encodeName(path).constData(), X_OK) == 0;
}

/// The interpreter and its one argument, if any, of a "#!" line.
std::optional<ScriptCommand> interpreterOf(const QByteArray& beginning) {
  if (!beginning.startsWith("#!"))
    return std::nullopt;
  const QByteArray line = beginning.mid(2, beginning.indexOf('\n') - 2).trimmed();
  qsizetype end = 0;
  while (end < line.size() && line[end] != ' ' && line[end] != '\t')
    ++end;
  ScriptCommand command{QFile::decodeName(line.left(end)), {}};
  if (const QByteArray argument = line.mid(end).trimmed(); !argument.isEmpty())
    command.arguments += QFile::decodeName(argument);
  return command;
}

Result<ScriptCommand> commandFor(const QString& path, const QByteArray& beginning) {
  const bool executable = mayExecute(path);
  if (executable && beginning.startsWith(kProgramMagic))
    return ScriptCommand{path, {}};
  auto command = interpreterOf(beginning);
  if (!command)
    return ScriptCommand{QStringLiteral("/bin/sh"), {path}};
  const QFileInfo interpreter(command->program);
  if (!interpreter.isFile() || !mayExecute(command->program)) {
    return Error{Error::Kind::NotFound,
                 QStringLiteral("its interpreter \"%1\" is not there").arg(command->program)};
  }
  if (executable)
    return ScriptCommand{path, {}};
  command->arguments += path;
  return *command;
}

} // namespace

Result<ScriptCommand> commandOfScript(const QString& path) {
  if (path.isEmpty() || path.contains(QChar(u'\0')))
    return Error{Error::Kind::NotFound, QStringLiteral("it has no path")};
  const QString absolute = QDir::home().absoluteFilePath(path);
  const QFileInfo info(absolute);
  if (!info.exists())
    return Error{Error::Kind::NotFound, QStringLiteral("there is no such file")};
  if (!info.isFile())
    return Error{Error::Kind::Refused, QStringLiteral("it is not a file")};
  QFile file(absolute);
  if (!file.open(QIODevice::ReadOnly)) {
    if (mayExecute(absolute)) // a program that may be run and not read
      return ScriptCommand{absolute, {}};
    return Error{Error::Kind::Refused,
                 QStringLiteral("it can't be read: %1").arg(file.errorString())};
  }
  return commandFor(absolute, file.read(kLongestFirstLine));
}

} // namespace tockwise
