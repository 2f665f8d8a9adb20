#include "command_words.h"
#include "generators.h"

#include <algorithm>

namespace tockwise {
namespace {

constexpr int kLineLength = 80;

/// As text of a man page: what roff takes for its own is escaped.
QString escaped(QString text) {
  text.replace(u'\\', QStringLiteral("\\e"))
      .replace(u'-', QStringLiteral("\\-"))
      .replace(u'\'', QStringLiteral("\\(aq"));
  return text.startsWith(u'.') ? QStringLiteral("\\&") + text : text;
}

/// A help text as escaped lines.
QString sentence(const char16_t* help) {
  QString text = QString::fromUtf16(help);
  text[0] = text[0].toUpper();
  if (!text.endsWith(u'.'))
    text += u'.';
  QString lines;
  QString line;
  for (const QString& word : escaped(text).split(u' ')) {
    if (!line.isEmpty() && line.size() + 1 + word.size() > kLineLength) {
      lines += line + u'\n';
      line.clear();
    }
    line += line.isEmpty() ? word : u' ' + word;
  }
  return lines + line + u'\n';
}

/// A synopsis with its words in bold and its placeholders in italics.
QString synopsis(const CommandSpec& command) {
  QString text = QStringLiteral("\\fBtockwise %1\\fR ").arg(QStringView(command.name));
  const QString words = QString::fromUtf16(command.synopsis);
  const bool prose = words.contains(u"options");
  QString word;
  for (const QChar mark : words + u' ') {
    if (!QStringLiteral(" ()[]|.").contains(mark)) {
      word += mark;
      continue;
    }
    const bool plain = prose && (word == u"options" || word == u"of" || findCommand(word));
    if (!word.isEmpty() && plain)
      text += escaped(word);
    else if (!word.isEmpty())
      text += (word == word.toUpper() ? QStringLiteral("\\fI%1\\fR") : QStringLiteral("\\fB%1\\fR"))
                  .arg(escaped(word));
    word.clear();
    text += mark;
  }
  return text.trimmed();
}

QString optionEntry(const CommandSpec& command, const OptionSpec& option) {
  QString label = QStringLiteral("\\fB\\-\\-%1\\fR").arg(escaped(QString::fromUtf16(option.name)));
  if (option.takesValue) {
    const QString placeholder = optionPlaceholder(command, option);
    label += QStringLiteral(" \\fI%1\\fR")
                 .arg(placeholder.isEmpty() ? QStringLiteral("VALUE") : escaped(placeholder));
  }
  return QStringLiteral(".TP\n%1\n%2").arg(label, sentence(option.help));
}

bool isListed(const OptionSpec& option, const CommandSpec& by) {
  return std::any_of(by.options.begin(), by.options.end(), [&](const OptionSpec& each) {
    return QStringView(each.name) == QStringView(option.name);
  });
}

/// An earlier command all of whose many options this one takes too, or nothing.
const CommandSpec* commandToPointAt(const CommandSpec& command) {
  for (const CommandSpec& earlier : commandTable()) {
    if (&earlier == &command)
      return nullptr;
    if (earlier.options.size() > 2 &&
        std::all_of(earlier.options.begin(), earlier.options.end(),
                    [&](const OptionSpec& option) { return isListed(option, command); }))
      return &earlier;
  }
  return nullptr;
}

QString commandEntry(const CommandSpec& command) {
  QString text = QStringLiteral(".TP\n%1\n%2").arg(synopsis(command), sentence(command.help));
  const CommandSpec* earlier = commandToPointAt(command);
  if (earlier) {
    text += QStringLiteral("Takes the options of\n.BR \"tockwise %1\" .\n")
                .arg(QStringView(earlier->name));
  }
  QString entries;
  for (const OptionSpec& option : command.options) {
    if (!earlier || !isListed(option, *earlier))
      entries += optionEntry(command, option);
  }
  return entries.isEmpty() ? text
                           : text + QStringLiteral(".RS\n") + entries + QStringLiteral(".RE\n");
}

} // namespace

QString manPageCommands() {
  QString text;
  for (const CommandSpec& command : commandTable())
    text += commandEntry(command);
  return text;
}

} // namespace tockwise
