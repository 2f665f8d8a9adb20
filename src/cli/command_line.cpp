#include "cli/command_line.h"

#include <algorithm>

namespace tockwise {
namespace {

QString synopsisOf(const CommandSpec& command) {
  const QString words = QString::fromUtf16(command.synopsis);
  return QStringLiteral("tockwise %1 %2").arg(QStringView(command.name), words).trimmed();
}

Error usage(const QString& message) {
  return Error{Error::Kind::Usage, message};
}

// The flags that are not handed on as they are.
void setFlag(Invocation& invocation, const QString& name) {
  if (name == u"json")
    invocation.json = true;
  else if (name == u"yes")
    invocation.yes = true;
  else if (name == u"no-task")
    invocation.options.insert(QStringLiteral("task"), QString());
  else if (name.startsWith(u"no-"))
    invocation.options.insert(name.mid(3), false);
  else
    invocation.options.insert(name, true);
}

// Takes the option at words[at]; returns how many words it was.
Result<qsizetype> takeOption(Invocation& invocation, const QStringList& words, qsizetype at) {
  const QString& word = words[at];
  const qsizetype equals = word.indexOf(u'=');
  const QString name = word.mid(2, equals < 0 ? -1 : equals - 2);
  if (name == u"help") {
    invocation.help = true;
    return 1;
  }
  const auto& options = invocation.command->options;
  const auto known = std::find_if(options.begin(), options.end(), [&](const OptionSpec& option) {
    return word.startsWith(u"--") && name == QStringView(option.name);
  });
  if (known == options.end()) {
    return usage(
        QStringLiteral("%1: there is no option %2 (put -- before a text that starts with a dash)")
            .arg(QStringView(invocation.command->name), word));
  }
  if (!known->takesValue) {
    if (equals >= 0)
      return usage(QStringLiteral("--%1 takes no value").arg(name));
    setFlag(invocation, name);
    return 1;
  }
  if (equals < 0 && at + 1 >= words.size())
    return usage(QStringLiteral("--%1 takes a value").arg(name));
  invocation.options.insert(name, equals < 0 ? words[at + 1] : word.mid(equals + 1));
  return equals < 0 ? 2 : 1;
}

Result<void> checkArguments(const Invocation& invocation) {
  const CommandSpec& command = *invocation.command;
  const auto count = int(invocation.arguments.size());
  const bool hasInstead =
      command.insteadOfArgument &&
      invocation.options.contains(QString::fromUtf16(command.insteadOfArgument));
  if (count >= command.fewestArguments - (hasInstead ? 1 : 0) &&
      (command.mostArguments < 0 || count <= command.mostArguments))
    return {};
  return usage(QStringLiteral("usage: ") + synopsisOf(command));
}

} // namespace

Result<Invocation> parseCommandLine(const QStringList& words) {
  Invocation invocation;
  invocation.command = words.isEmpty() ? nullptr : findCommand(words.front());
  if (!invocation.command) {
    return usage(QStringLiteral("there is no command \"%1\" (tockwise --help lists them)")
                     .arg(words.value(0)));
  }
  bool onlyArguments = false;
  for (qsizetype at = 1; at < words.size();) {
    const QString& word = words[at];
    if (!onlyArguments && word == u"--") {
      onlyArguments = true;
      ++at;
    } else if (!onlyArguments && word.size() > 1 && word.startsWith(u'-')) {
      const auto taken = takeOption(invocation, words, at);
      if (!taken)
        return taken.error();
      at += *taken;
    } else {
      invocation.arguments.append(word);
      ++at;
    }
  }
  if (!invocation.help) {
    if (const auto checked = checkArguments(invocation); !checked)
      return checked.error();
  }
  return invocation;
}

QString helpText(const CommandSpec* command) {
  QString text;
  if (!command) {
    text = QStringLiteral(
               "Tockwise %1, a reminder application that lives in the system tray.\n\n"
               "tockwise\n    starts the application, or shows the menu of the running one\n"
               "tockwise FILE...\n    opens reminders documents in it, after a question\n")
               .arg(QStringLiteral(TOCKWISE_VERSION));
    for (const CommandSpec& each : commandTable()) {
      text += QStringLiteral("%1\n    %2\n").arg(synopsisOf(each), QStringView(each.help));
    }
    return text + QStringLiteral("\ntockwise COMMAND --help tells more.\n");
  }
  text = QStringLiteral("%1\n    %2\n").arg(synopsisOf(*command), QStringView(command->help));
  for (const OptionSpec& option : command->options) {
    const QString name = QStringLiteral("--%1%2").arg(
        QStringView(option.name), option.takesValue ? QStringView(u" ...") : QStringView());
    text += QStringLiteral("  %1 %2\n").arg(name, -14).arg(QStringView(option.help));
  }
  return text;
}

} // namespace tockwise
