#include "platform/autostart_entry.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace tockwise {
namespace {

/// The escapes that every value of type string has.
QString unescapeValue(const QByteArray& raw) {
  QByteArray text;
  for (qsizetype i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\\' || i + 1 == raw.size()) {
      text += raw[i];
      continue;
    }
    switch (raw[++i]) {
    case 's':
      text += ' ';
      break;
    case 'n':
      text += '\n';
      break;
    case 't':
      text += '\t';
      break;
    case 'r':
      text += '\r';
      break;
    case '\\':
      text += '\\';
      break;
    default: // no escape of theirs
      text += '\\';
      text += raw[i];
      break;
    }
  }
  return QString::fromUtf8(text);
}

QByteArray escapeValue(const QString& text) {
  QByteArray raw;
  for (const char byte : text.toUtf8()) {
    switch (byte) {
    case '\\':
      raw += "\\\\";
      break;
    case '\n':
      raw += "\\n";
      break;
    case '\t':
      raw += "\\t";
      break;
    case '\r':
      raw += "\\r";
      break;
    case ' ':
      raw += raw.isEmpty() ? "\\s" : " "; // blanks after the equals sign do not count
      break;
    default:
      raw += byte;
      break;
    }
  }
  return raw;
}

/// The words of an Exec line: blanks part them, double quotes hold them together. Nothing when a
/// quote has no end.
std::optional<QStringList> wordsOf(const QString& line) {
  QStringList words;
  QString word;
  bool isInWord = false;
  bool isQuoted = false;
  for (qsizetype i = 0; i < line.size(); ++i) {
    const QChar character = line[i];
    if (isQuoted && character == u'\\' && i + 1 < line.size()) {
      word += line[++i];
    } else if (character == u'"') {
      isQuoted = !isQuoted;
      isInWord = true;
    } else if (!isQuoted && character.isSpace()) {
      if (isInWord)
        words += word;
      word.clear();
      isInWord = false;
    } else {
      word += character;
      isInWord = true;
    }
  }
  if (isQuoted)
    return std::nullopt;
  if (isInWord)
    words += word;
  return words;
}

bool isFieldCode(const QString& word) {
  return word.size() == 2 && word[0] == u'%' && word[1] != u'%';
}

QString quoted(const QString& program) {
  QString word;
  for (const QChar character : program) {
    if (QStringView(u"\"`$\\").contains(character))
      word += u'\\';
    word += character;
    if (character == u'%')
      word += u'%';
  }
  const bool isPlain =
      !word.isEmpty() && std::all_of(word.begin(), word.end(), [](QChar character) {
        return character.isLetterOrNumber() || QStringView(u"/._-+%").contains(character);
      });
  return isPlain ? word : u'"' + word + u'"';
}

/// GIO looks for the program before it takes %% for a percent sign, so that one with a percent sign
/// in its path needs somebody else to start it.
QString execFor(const QString& program) {
  const QString word = quoted(program);
  return program.contains(u'%') ? QStringLiteral("env ") + word : word;
}

} // namespace

AutostartEntry::AutostartEntry(const QByteArray& bytes) {
  bool isInGroup = false;
  for (const QByteArray& each : bytes.split('\n')) {
    const QByteArray line = each.trimmed();
    if (line.startsWith('['))
      isInGroup = line == "[Desktop Entry]";
    const qsizetype equals = line.indexOf('=');
    if (!isInGroup || line.startsWith('#') || equals <= 0)
      continue;
    m_values.insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
  }
}

QString AutostartEntry::value(const char* key) const {
  return unescapeValue(m_values.value(key));
}

QStringList AutostartEntry::list(const char* key) const {
  return value(key).split(u';', Qt::SkipEmptyParts);
}

QStringList AutostartEntry::command() const {
  auto words = wordsOf(value("Exec"));
  if (!words)
    return {};
  if (!words->isEmpty() && QFileInfo(words->first()).fileName() == u"env") {
    words->removeFirst();
    while (!words->isEmpty() && words->first().contains(u'='))
      words->removeFirst();
  }
  words->removeIf(isFieldCode);
  words->replaceInStrings(QStringLiteral("%%"), QStringLiteral("%"));
  return *words;
}

bool AutostartEntry::isStartedOn(const QStringList& desktops) const {
  const auto isOneOf = [&](const QStringList& names) {
    return std::any_of(names.begin(), names.end(),
                       [&](const QString& name) { return desktops.contains(name); });
  };
  const QStringList only = list("OnlyShowIn");
  return value("Type") == u"Application" && value("Hidden") != u"true" &&
         value("X-GNOME-Autostart-enabled") != u"false" && (only.isEmpty() || isOneOf(only)) &&
         !isOneOf(list("NotShowIn"));
}

QByteArray autostartEntryFor(const QString& program) {
  return "[Desktop Entry]\n"
         "Type=Application\n"
         "Name=Tockwise\n"
         "Comment=Reminders in the system tray\n"
         "Exec=" +
         escapeValue(execFor(program)) +
         "\n"
         "TryExec=" +
         escapeValue(program) +
         "\n"
         "Icon=com.quillstone.Tockwise\n"
         "Terminal=false\n"
         "StartupNotify=false\n"
         "X-GNOME-Autostart-enabled=true\n";
}

QByteArray hiddenAutostartEntry() {
  return "[Desktop Entry]\n"
         "Type=Application\n"
         "Name=Tockwise\n"
         "Hidden=true\n";
}

} // namespace tockwise
