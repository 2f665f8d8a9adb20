#include "prefs/hot_key_text.h"

#include <QStringList>

#include <algorithm>

namespace tockwise {
namespace {

struct Row {
  const char16_t* does;
  const char16_t* command; // for a key that the user binds
};

// In the order of kHotKeys.
constexpr Row kRows[] = {
    {u"opens the editor for a new reminder", u"tockwise new"},
    {u"shows all current alerts", u"tockwise alerts show"},
    {u"hides all current alerts", u"tockwise alerts hide"},
    {u"prints all current alerts", u"tockwise print --alerts"},
};

using State = HotKeys::State;

const Row& rowOf(HotKey key) {
  return kRows[size_t(key) - 1];
}

QString nameOf(HotKey key) {
  return QStringLiteral("Control+Super+") + QChar(letterOf(key));
}

/// "Control+Super+M, S and P" of the keys that are in that state.
QString keysIn(State state, const HotKeyStates& states) {
  QStringList letters;
  for (const HotKey key : kHotKeys) {
    if (states[size_t(key) - 1] == state)
      letters += QChar(letterOf(key));
  }
  const QString last = letters.takeLast();
  const QString others = letters.join(QStringLiteral(", "));
  return QStringLiteral("Control+Super+") +
         (others.isEmpty() ? last : QStringLiteral("%1 and %2").arg(others, last));
}

QString meanings() {
  QStringList lines;
  for (const HotKey key : kHotKeys)
    lines += QStringLiteral("%1 %2").arg(nameOf(key), QStringView(rowOf(key).does));
  return lines.join(u'\n');
}

QString commands() {
  QStringList lines;
  for (const Row& row : kRows)
    lines += QStringLiteral("%1: %2").arg(QStringView(row.command)).arg(QStringView(row.does));
  return lines.join(u'\n');
}

HotKeyText notAvailable(const QString& detail) {
  const QString why = detail.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(detail);
  return {QStringLiteral("Not available here: bind keys to \"tockwise new\", "
                         "\"tockwise alerts show\" …"),
          QStringLiteral("This desktop gives programs no hot keys%1. In its settings for the "
                         "keyboard, bind keys of your own to these commands:\n")
                  .arg(why) +
              commands()};
}

HotKeyText taken(const HotKeyStates& states) {
  const qsizetype count = std::count(states.begin(), states.end(), State::Taken);
  const QString keys = keysIn(State::Taken, states);
  return {(count == 1 ? QStringLiteral("%1 is taken by another program")
                      : QStringLiteral("%1 are taken by another program"))
              .arg(keys),
          QStringLiteral("%1\nA key that another program has begins to work when that program "
                         "gives it back. Until then, other keys can be bound in the desktop's "
                         "settings for the keyboard:\n")
                  .arg(meanings()) +
              commands()};
}

} // namespace

HotKeyText hotKeyText(const HotKeyStates& states, const QString& detail) {
  const auto any = [&](State state) {
    return std::find(states.begin(), states.end(), state) != states.end();
  };
  if (any(State::Pending))
    return {QStringLiteral("Asking the desktop …"), meanings()};
  if (any(State::NotAvailable))
    return notAvailable(detail);
  if (any(State::Taken))
    return taken(states);
  if (any(State::Off))
    return {QStringLiteral("Ready"), meanings()};
  return {QStringLiteral("%1 work").arg(keysIn(State::Registered, states)), meanings()};
}

HotKeyText hotKeyText(const HotKeys& hotKeys) {
  return hotKeyText(statesOf(hotKeys), hotKeys.detail());
}

QString hotKeyStateText(HotKey key, State state) {
  const QStringView command(rowOf(key).command);
  switch (state) {
  case State::Off:
    return QStringLiteral("off");
  case State::Pending:
    return QStringLiteral("waiting for the desktop");
  case State::Registered:
    return QStringLiteral("works");
  case State::Taken:
    return QStringLiteral("taken by another program; instead bind: %1").arg(command);
  case State::NotAvailable:
    return QStringLiteral("not available here; instead bind: %1").arg(command);
  }
  return {};
}

QString hotKeyPressText(HotKey key, HotKeys::State state) {
  const Row& row = rowOf(key);
  const QString words = nameOf(key);
  if (state == State::Registered)
    return QStringLiteral("%1 works: it %2").arg(words).arg(QStringView(row.does));
  if (state == State::Off)
    return QStringLiteral("%1 is switched off: it %2").arg(words).arg(QStringView(row.does));
  return QStringLiteral("%1 does not work outside Tockwise").arg(words);
}

} // namespace tockwise
