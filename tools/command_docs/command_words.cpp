#include "command_words.h"

#include "prefs/setting_table.h"

#include <algorithm>

namespace tockwise {
namespace {

using Sequence = QStringList;
using Sequences = QList<Sequence>; // the alternatives, each a sequence of words

// "[--json] | ok|hide [N]" as "[", "--json", "]", "|", "ok|hide", "[", "N", "]".
QStringList tokens(QStringView synopsis) {
  QString text = synopsis.toString();
  for (const QChar bracket : {u'(', u')', u'[', u']'})
    text.replace(bracket, QStringLiteral(" %1 ").arg(bracket));
  return text.split(u' ', Qt::SkipEmptyParts);
}

class SynopsisReader {
 public:
  explicit SynopsisReader(QStringList tokens) : m_tokens(std::move(tokens)) {}

  Sequences alternatives() {
    Sequences all = sequence();
    while (take(u"|"))
      all += sequence();
    return all;
  }

 private:
  bool take(QStringView token) {
    if (m_at >= m_tokens.size() || m_tokens[m_at] != token)
      return false;
    ++m_at;
    return true;
  }

  Sequences sequence() {
    Sequences all{Sequence()};
    while (m_at < m_tokens.size() && !ends(m_tokens[m_at])) {
      const Sequences next = part();
      Sequences longer;
      for (const Sequence& start : std::as_const(all)) {
        for (const Sequence& end : next)
          longer += start + end;
      }
      all = longer;
    }
    return all;
  }

  Sequences part() {
    if (take(u"("))
      return group(u")");
    if (take(u"["))
      return Sequences{Sequence()} + group(u"]");
    return {{m_tokens[m_at++]}};
  }

  Sequences group(QStringView end) {
    if (m_tokens.value(m_at) == u"options") {
      while (m_at < m_tokens.size() && m_tokens[m_at] != end)
        ++m_at;
      take(end);
      return {Sequence()};
    }
    const Sequences all = alternatives();
    take(end);
    return all;
  }

  static bool ends(const QString& token) { return token == u"|" || token == u")" || token == u"]"; }

  QStringList m_tokens;
  qsizetype m_at = 0;
};

bool isPlaceholder(const QString& word) {
  return word == word.toUpper();
}

// The words that are no options and no values of options.
Sequence arguments(const CommandSpec& command, const Sequence& words) {
  Sequence kept;
  for (qsizetype at = 0; at < words.size(); ++at) {
    if (!words[at].startsWith(u"--")) {
      kept += words[at];
      continue;
    }
    const auto option =
        std::find_if(command.options.begin(), command.options.end(), [&](const OptionSpec& each) {
          return words[at].mid(2) == QStringView(each.name);
        });
    if (option != command.options.end() && option->takesValue)
      ++at;
  }
  return kept;
}

// The word of a synopsis as part of the words before another.
QStringList asBefore(const QString& word) {
  QStringList all;
  for (const QString& choice : word.split(u'|'))
    all += isPlaceholder(choice) ? QStringLiteral("*") : choice;
  return all;
}

void addPlace(QList<WordPlace>& places, const QStringList& before, const QString& word) {
  const bool repeats = word.endsWith(u"...");
  auto place = std::find_if(places.begin(), places.end(),
                            [&](const WordPlace& each) { return each.before == before; });
  if (place == places.end())
    place = places.insert(places.end(), WordPlace{before, {}, {}});
  place->repeats = place->repeats || repeats;
  for (const QString& choice : word.chopped(repeats ? 3 : 0).split(u'|')) {
    QStringList& list = isPlaceholder(choice) ? place->placeholders : place->words;
    if (!list.contains(choice))
      list += choice;
  }
}

} // namespace

QList<WordPlace> wordPlaces(const CommandSpec& command) {
  QList<WordPlace> places;
  const Sequences forms = SynopsisReader(tokens(QStringView(command.synopsis))).alternatives();
  for (const Sequence& form : forms) {
    QList<QStringList> befores{{QString::fromUtf16(command.name)}};
    for (const QString& word : arguments(command, form)) {
      QList<QStringList> longer;
      for (const QStringList& before : std::as_const(befores)) {
        addPlace(places, before, word);
        for (const QString& choice : asBefore(word))
          longer += before + QStringList(choice);
      }
      befores = longer;
    }
  }
  return places;
}

QString optionPlaceholder(const CommandSpec& command, const OptionSpec& option) {
  const QStringList words = tokens(QStringView(command.synopsis));
  const qsizetype at = words.indexOf(QStringLiteral("--%1").arg(QStringView(option.name)));
  const QString next = at < 0 ? QString() : words.value(at + 1);
  return option.takesValue && !next.isEmpty() && next.front().isUpper() ? next : QString();
}

QStringList optionValues(const OptionSpec& option) {
  return option.values ? QString::fromUtf16(option.values).split(u' ') : QStringList();
}

QStringList allSettings() {
  QStringList keys;
  for (const SettingRow& row : settingTable())
    keys += QString::fromUtf16(row.key);
  return keys;
}

QStringList booleanSettings() {
  QStringList keys;
  for (const SettingRow& row : settingTable()) {
    if (row.type == SettingType::Boolean)
      keys += QString::fromUtf16(row.key);
  }
  return keys;
}

} // namespace tockwise
