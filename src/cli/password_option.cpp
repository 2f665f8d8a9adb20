#include "cli/password_option.h"

#include <QFile>

#include <cstdio>

namespace tockwise {

Result<void> readPasswordOption(QStringList& prefsArguments) {
  constexpr qint64 kLongestLine = 65536;
  const QStringList wanted{QStringLiteral("set"), QStringLiteral("passwordAD"),
                           QStringLiteral("-")};
  if (prefsArguments != wanted)
    return {};
  QFile input;
  const bool opened = input.open(stdin, QIODevice::ReadOnly);
  QByteArray line = opened ? input.readLine(kLongestLine) : QByteArray();
  if (line.isEmpty())
    return Error{Error::Kind::Usage, QStringLiteral("there is no password on the standard input")};
  while (line.endsWith('\n') || line.endsWith('\r'))
    line.chop(1);
  prefsArguments.back() = QString::fromUtf8(line);
  return {};
}

} // namespace tockwise
