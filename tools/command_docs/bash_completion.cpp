#include "command_words.h"
#include "generators.h"

namespace tockwise {
namespace {

const char16_t* const kFrame =
    uR"frame(# bash completion for tockwise                              -*- shell-script -*-
# Generated from the program's table of commands.

_tockwise()
{
    local cur prev words cword split
    _init_completion -s -n : || return

    # The command and its arguments before the cursor, without options and their values.
    local -a before=()
    local index word value='' only=''
    for ((index = 1; index < cword; index++)); do
        word=${words[index]}
        if [[ $value ]]; then
            value=''
        elif [[ ! $only && $word == -- ]]; then
            only=yes
        elif [[ ! $only && $word == -?* ]]; then
            case "${before[0]-} $word" in
%1                    value=yes ;;
            esac
        else
            before+=("$word")
        fi
    done

    if [[ $value ]] || $split; then
        case "${before[0]-} $prev" in
%2        esac
        return
    fi

    if [[ ! $only && $cur == -* ]]; then
        case ${before[0]-} in
%3        esac
        return
    fi

    if [[ ${before[0]-} == *.tockwise ]]; then
        _filedir tockwise
        return
    fi

    local IFS=$' \t\n'
    case "${before[*]}" in
%4    esac
} &&
    complete -F _tockwise tockwise

# ex: filetype=sh
)frame";

QString offer(const QStringList& words) {
  return QStringLiteral("COMPREPLY=($(compgen -W '%1' -- \"$cur\"))").arg(words.join(u' '));
}

QString line(int indent, const QString& text) {
  return QString(indent, u' ') + text + u'\n';
}

/// 'prefs set '* for the words prefs, set and any.
QString pattern(const QStringList& words) {
  QString text = u'\'' + words.join(u' ') + u'\'';
  return text.replace(QStringLiteral("*"), QStringLiteral("'*'")).remove(QStringLiteral("''"));
}

QString optionsWithValues() {
  QStringList all;
  for (const CommandSpec& command : commandTable()) {
    for (const OptionSpec& option : command.options) {
      if (option.takesValue)
        all += QStringLiteral("'%1 --%2'").arg(QStringView(command.name), QStringView(option.name));
    }
  }
  return QString(16, u' ') + all.join(QStringLiteral(" | \\\n                    ")) +
         QStringLiteral(")\n");
}

QString optionValueCases() {
  QString text;
  for (const CommandSpec& command : commandTable()) {
    for (const OptionSpec& option : command.options) {
      const QString label =
          QStringLiteral("'%1 --%2') ").arg(QStringView(command.name), QStringView(option.name));
      if (const QStringList values = optionValues(option); !values.isEmpty())
        text += line(12, label + offer(values) + QStringLiteral(" ;;"));
      else if (optionPlaceholder(command, option) == u"FILE")
        text += line(12, label + QStringLiteral("_filedir ;;"));
    }
  }
  return text;
}

QString optionCases() {
  QString text = line(12, QStringLiteral("'') ") +
                              offer({QStringLiteral("--help"), QStringLiteral("--version")}) +
                              QStringLiteral(" ;;"));
  for (const CommandSpec& command : commandTable()) {
    QStringList names;
    for (const OptionSpec& option : command.options)
      names += QStringLiteral("--%1").arg(QStringView(option.name));
    names += QStringLiteral("--help");
    text += line(12, QStringLiteral("%1) ").arg(QStringView(command.name)) + offer(names) +
                         QStringLiteral(" ;;"));
  }
  return text;
}

QString placeCase(const WordPlace& place) {
  QString label = pattern(place.before);
  if (place.repeats && place.before.constLast() != u"*")
    label += QStringLiteral(" | ") + pattern(place.before + QStringList(QStringLiteral("*")));
  QString action;
  if (place.placeholders.contains(QStringLiteral("FILE")))
    action = QStringLiteral("_filedir tockwise");
  else if (place.placeholders.contains(QStringLiteral("KEY")))
    action = offer(allSettings());
  else if (!place.words.isEmpty())
    action = offer(place.words);
  else
    return {};
  return line(8, label + u')') + line(12, action + QStringLiteral(" ;;"));
}

QString booleanCase(const WordPlace& place) {
  QStringList patterns;
  for (const QString& key : booleanSettings())
    patterns += u'\'' +
                (place.before.mid(0, place.before.size() - 1) + QStringList(key)).join(u' ') +
                u'\'';
  return line(8, patterns.join(QStringLiteral(" | \\\n            ")) + u')') +
         line(12, offer({QStringLiteral("YES"), QStringLiteral("NO")}) + QStringLiteral(" ;;"));
}

QString placeCases() {
  QStringList names;
  QString text;
  for (const CommandSpec& command : commandTable()) {
    names += QString::fromUtf16(command.name);
    for (const WordPlace& place : wordPlaces(command)) {
      text += place.placeholders.contains(QStringLiteral("VALUE")) ? booleanCase(place)
                                                                   : placeCase(place);
    }
  }
  // Documents are named by a path, commands are not.
  return line(8, QStringLiteral("'')")) + line(12, offer(names)) +
         line(12, QStringLiteral("_filedir tockwise ;;")) + line(8, QStringLiteral("help)")) +
         line(12, offer(names) + QStringLiteral(" ;;")) + text;
}

} // namespace

QString bashCompletion() {
  return QString::fromUtf16(kFrame).arg(optionsWithValues(), optionValueCases(), optionCases(),
                                        placeCases());
}

} // namespace tockwise
