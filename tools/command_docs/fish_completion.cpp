#include "command_words.h"
#include "generators.h"

namespace tockwise {
namespace {

const char16_t* const kFrame = uR"frame(# fish completion for tockwise
# Generated from the program's table of commands.

# The command and its arguments before the cursor, without options and their values.
function __tockwise_before
    set -l options_with_values%1
    set -l typed (commandline -opc)
    set -e typed[1]
    set -l before
    set -l value no
    set -l only no
    for word in $typed
        if test $value = yes
            set value no
        else if test $only = no -a "$word" = --
            set only yes
        else if test $only = no; and string match -qr -- '^-.' $word
            if contains -- "$before[1] $word" $options_with_values
                set value yes
            end
        else
            set -a before $word
        end
    end
    string join ' ' -- $before
end

# Whether these are the words before the cursor; * stands for any.
function __tockwise_after
    set -l before (__tockwise_before)
    for words in $argv
        string match -q -- $words "$before"; and return 0
    end
    return 1
end

function __tockwise_command
    string match -qr -- "^$argv[1]( |\$)" (__tockwise_before)
end

complete -c tockwise -f
complete -c tockwise -n '__tockwise_after ""' -l help -s h -d 'print help'
complete -c tockwise -n '__tockwise_after ""' -l version -d 'print the version'
complete -c tockwise -n '__tockwise_after ""' -k -a '(__fish_complete_suffix .tockwise)'
complete -c tockwise -n '__tockwise_command "[^ ]+\.tockwise"' -k \
    -a '(__fish_complete_suffix .tockwise)'
%2)frame";

QString quoted(QString text) {
  text.replace(u'\\', QStringLiteral("\\\\")).replace(u'\'', QStringLiteral("\\'"));
  return u'\'' + text + u'\'';
}

QString rule(const QString& condition, const QString& rest) {
  return QStringLiteral("complete -c tockwise -n %1 %2\n").arg(quoted(condition), rest);
}

QString commandRules(const CommandSpec& command) {
  const QString name = QString::fromUtf16(command.name);
  const QString in = QStringLiteral("__tockwise_command ") + name;
  const QString help = quoted(QString::fromUtf16(command.help));
  QString text = rule(QStringLiteral("__tockwise_after \"\" help"),
                      QStringLiteral("-a %1 -d %2").arg(name, help));
  for (const OptionSpec& option : command.options) {
    QString value;
    if (const QStringList values = optionValues(option); !values.isEmpty())
      value = QStringLiteral(" -x -a ") + quoted(values.join(u' '));
    else if (optionPlaceholder(command, option) == u"FILE")
      value = QStringLiteral(" -r -F");
    else if (option.takesValue)
      value = QStringLiteral(" -x");
    text += rule(in, QStringLiteral("-l %1%2 -d %3")
                         .arg(QString::fromUtf16(option.name), value,
                              quoted(QString::fromUtf16(option.help))));
  }
  return text + rule(in, QStringLiteral("-l help -d 'print help'"));
}

QString placeRule(const WordPlace& place) {
  QString patterns = quoted(place.before.join(u' '));
  if (place.repeats)
    patterns += u' ' + quoted((place.before + QStringList(QStringLiteral("*"))).join(u' '));
  const QString condition = QStringLiteral("__tockwise_after ") + patterns;
  if (place.placeholders.contains(QStringLiteral("FILE")))
    return rule(condition, QStringLiteral("-k -a '(__fish_complete_suffix .tockwise)'"));
  if (place.placeholders.contains(QStringLiteral("KEY")))
    return rule(condition, QStringLiteral("-a ") + quoted(allSettings().join(u' ')));
  if (!place.words.isEmpty())
    return rule(condition, QStringLiteral("-a ") + quoted(place.words.join(u' ')));
  return {};
}

QString booleanRule(const WordPlace& place) {
  const QStringList before = place.before.mid(0, place.before.size() - 1);
  QString condition = QStringLiteral("__tockwise_after");
  for (const QString& key : booleanSettings())
    condition += u' ' + quoted((before + QStringList(key)).join(u' '));
  return rule(condition, QStringLiteral("-a 'YES NO'"));
}

} // namespace

QString fishCompletion() {
  QString options;
  QString rules;
  for (const CommandSpec& command : commandTable()) {
    rules += u'\n' + commandRules(command);
    for (const OptionSpec& option : command.options) {
      if (option.takesValue)
        options += QStringLiteral(" \\\n        '%1 --%2'")
                       .arg(QStringView(command.name), QStringView(option.name));
    }
    for (const WordPlace& place : wordPlaces(command)) {
      rules += place.placeholders.contains(QStringLiteral("VALUE")) ? booleanRule(place)
                                                                    : placeRule(place);
    }
  }
  return QString::fromUtf16(kFrame).arg(options, rules);
}

} // namespace tockwise
