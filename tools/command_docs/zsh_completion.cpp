#include "command_words.h"
#include "generators.h"

#include <algorithm>

namespace tockwise {
namespace {

const char16_t* const kFrame = uR"frame(#compdef tockwise
# Generated from the program's table of commands.

_tockwise() {
  local curcontext=$curcontext state
  local -a line commands
  local -A opt_args
  commands=(
%1  )
  _arguments -S -C \
    '(- *)'{-h,--help}'[print help]' \
    '(- *)--version[print the version]' \
    '1: :->command' \
    '*:: :->arguments' && return
  if [[ $state == command ]]; then
    _describe -t commands command commands
    _files -g '*.tockwise(-.)'
    return
  fi
  case $words[1] in
    help) _describe -t commands command commands ;;
    *.tockwise) _files -g '*.tockwise(-.)' ;;
%2  esac
  case $state in
%3  esac
}

_tockwise "$@"
)frame";

/// In single quotes, and as the texts of _arguments and _describe are written.
QString quoted(QString text) {
  for (const QString& mark :
       {QStringLiteral("\\"), QStringLiteral("["), QStringLiteral("]"), QStringLiteral(":")})
    text.replace(mark, u'\\' + mark);
  return text.replace(u'\'', QStringLiteral("'\\''"));
}

QString spec(const CommandSpec& command, const OptionSpec& option) {
  QString action;
  if (option.takesValue) {
    const QString placeholder = optionPlaceholder(command, option);
    if (const QStringList values = optionValues(option); !values.isEmpty())
      action = QStringLiteral(":value:(%1)").arg(values.join(u' '));
    else if (placeholder == u"FILE")
      action = QStringLiteral(":file:_files");
    else
      action = QStringLiteral(":value: ");
  }
  return QStringLiteral("'--%1%2[%3]%4'")
      .arg(QString::fromUtf16(option.name), option.takesValue ? QStringLiteral("=") : QString(),
           quoted(QString::fromUtf16(option.help)), action);
}

/// The state of _arguments in which the words of a command's place are offered.
QString stateName(const CommandSpec& command, qsizetype position) {
  return QStringLiteral("%1-%2").arg(QStringView(command.name)).arg(position);
}

QString commandCase(const CommandSpec& command) {
  QString text = QStringLiteral("    %1)\n      _arguments -S -C").arg(QStringView(command.name));
  for (const OptionSpec& option : command.options)
    text += QStringLiteral(" \\\n        ") + spec(command, option);
  text += QStringLiteral(" \\\n        '(- *)--help[print help]'");
  qsizetype last = 0;
  bool repeats = false;
  for (const WordPlace& place : wordPlaces(command)) {
    last = std::max(last, place.before.size());
    repeats = repeats || place.repeats;
  }
  for (qsizetype position = 1; position <= last; ++position) {
    const QString where =
        position == last && repeats ? QStringLiteral("*") : QString::number(position);
    text += QStringLiteral(" \\\n        '%1: :->%2'").arg(where, stateName(command, position));
  }
  return text + QStringLiteral(" && return ;;\n");
}

QString offer(const WordPlace& place) {
  if (place.placeholders.contains(QStringLiteral("FILE")))
    return QStringLiteral("_files -g '*.tockwise(-.)'");
  QStringList words = place.words;
  if (place.placeholders.contains(QStringLiteral("KEY")))
    words += allSettings();
  return words.isEmpty() ? QStringLiteral("_message '%1'").arg(place.placeholders.join(u'|'))
                         : QStringLiteral("compadd -- ") + words.join(u' ');
}

/// A state that tells by the words before which of its places is meant.
QString stateCase(const WordPlace& place) {
  const QStringList before = place.before.mid(1);
  QString test;
  for (qsizetype at = 0; at < before.size(); ++at) {
    if (before[at] != u"*")
      test += QStringLiteral(" && $line[%1] == %2").arg(at + 1).arg(before[at]);
  }
  QString action = offer(place);
  if (place.placeholders.contains(QStringLiteral("VALUE"))) {
    action = QStringLiteral("[[ $line[%1] == (%2) ]] && compadd -- YES NO")
                 .arg(before.size())
                 .arg(booleanSettings().join(u'|'));
  }
  if (!test.isEmpty())
    action = QStringLiteral("[[ %1 ]] && ").arg(test.mid(4)) + action;
  return QStringLiteral("      %1\n").arg(action);
}

QString stateCases() {
  QString text;
  for (const CommandSpec& command : commandTable()) {
    const QList<WordPlace> places = wordPlaces(command);
    qsizetype last = 0;
    for (const WordPlace& place : places)
      last = std::max(last, place.before.size());
    for (qsizetype position = 1; position <= last; ++position) {
      text += QStringLiteral("    %1)\n").arg(stateName(command, position));
      for (const WordPlace& place : places) {
        if (place.before.size() == position)
          text += stateCase(place);
      }
      text += QStringLiteral("      ;;\n");
    }
  }
  return text;
}

} // namespace

QString zshCompletion() {
  QString names;
  QString cases;
  for (const CommandSpec& command : commandTable()) {
    names += QStringLiteral("    '%1:%2'\n")
                 .arg(QString::fromUtf16(command.name), quoted(QString::fromUtf16(command.help)));
    cases += commandCase(command);
  }
  return QString::fromUtf16(kFrame).arg(names, cases, stateCases());
}

} // namespace tockwise
