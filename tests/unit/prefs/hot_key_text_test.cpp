#include "prefs/hot_key_text.h"
#include "support/fakes.h"

#include <QTest>

using namespace tockwise;
using State = HotKeys::State;
using States = std::array<State, 4>;

namespace {

QString line(States states) {
  return hotKeyText(states, QStringLiteral("X11")).line;
}

States all(State state) {
  return {state, state, state, state};
}

} // namespace

class HotKeyTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void keysThatAreOffAreReady();
  void keysThatWorkAreNamed();
  void takenKeysAreNamed_data();
  void takenKeysAreNamed();
  void pendingKeysAreBeingAskedFor();
  void whatToBindIsSaidWhereThereAreNoHotKeys();
  void whyThereAreNoneIsSaid();
  void everyKeyIsExplained();
  void eachStateHasItsWordsAndWhatToBindInstead();
  void pressedKeysAreAnswered();
  void theKeysThemselvesAreAsked();
};

void HotKeyTextTest::keysThatAreOffAreReady() {
  QCOMPARE(line(all(State::Off)), QStringLiteral("Ready"));
}

void HotKeyTextTest::keysThatWorkAreNamed() {
  QCOMPARE(line(all(State::Registered)), QStringLiteral("Control+Super+M, S, H and P work"));
}

void HotKeyTextTest::takenKeysAreNamed_data() {
  constexpr State T = State::Taken;
  constexpr State R = State::Registered;
  QTest::addColumn<States>("states");
  QTest::addColumn<QString>("expected");
  const auto row = [](const char* name, States states, const char* expected) {
    QTest::newRow(name) << states << QString::fromLatin1(expected);
  };
  row("one", {R, T, R, R}, "Control+Super+S is taken by another program");
  row("two", {T, R, R, T}, "Control+Super+M and P are taken by another program");
  row("three", {T, T, R, T}, "Control+Super+M, S and P are taken by another program");
  row("all", {T, T, T, T}, "Control+Super+M, S, H and P are taken by another program");
}

void HotKeyTextTest::takenKeysAreNamed() {
  QFETCH(const States, states);
  QFETCH(const QString, expected);
  QCOMPARE(line(states), expected);
}

void HotKeyTextTest::pendingKeysAreBeingAskedFor() {
  QCOMPARE(line(all(State::Pending)), QStringLiteral("Asking the desktop …"));
}

void HotKeyTextTest::whatToBindIsSaidWhereThereAreNoHotKeys() {
  const HotKeyText text = hotKeyText(all(State::NotAvailable), QString());
  QVERIFY2(text.line.startsWith(QStringLiteral("Not available here: bind keys to")),
           qPrintable(text.line));
  QVERIFY(text.line.contains(QStringLiteral("tockwise new")));
  for (const char* command :
       {"tockwise new", "tockwise alerts show", "tockwise alerts hide", "tockwise print --alerts"})
    QVERIFY2(text.toolTip.contains(QLatin1String(command)), command);
}

void HotKeyTextTest::whyThereAreNoneIsSaid() {
  const HotKeyText text =
      hotKeyText(all(State::NotAvailable), QStringLiteral("no portal answered"));
  QVERIFY(text.toolTip.contains(QStringLiteral("no portal answered")));
}

void HotKeyTextTest::everyKeyIsExplained() {
  for (const State state : {State::Off, State::Pending, State::Registered, State::Taken}) {
    const QString toolTip = hotKeyText(all(state), QString()).toolTip;
    for (const char* key : {"Super+M opens", "Super+S shows", "Super+H hides", "Super+P prints"})
      QVERIFY2(toolTip.contains(QLatin1String(key)), key);
  }
}

void HotKeyTextTest::eachStateHasItsWordsAndWhatToBindInstead() {
  const auto words = [](State state) { return hotKeyStateText(HotKey::ShowAlerts, state); };
  QCOMPARE(words(State::Off), QStringLiteral("off"));
  QCOMPARE(words(State::Pending), QStringLiteral("waiting for the desktop"));
  QCOMPARE(words(State::Registered), QStringLiteral("works"));
  QCOMPARE(words(State::Taken),
           QStringLiteral("taken by another program; instead bind: tockwise alerts show"));
  QCOMPARE(words(State::NotAvailable),
           QStringLiteral("not available here; instead bind: tockwise alerts show"));
  QCOMPARE(hotKeyStateText(HotKey::PrintAlerts, State::Taken),
           QStringLiteral("taken by another program; instead bind: tockwise print --alerts"));
}

void HotKeyTextTest::pressedKeysAreAnswered() {
  QCOMPARE(hotKeyPressText(HotKey::NewReminder, State::Registered),
           QStringLiteral("Control+Super+M works: it opens the editor for a new reminder"));
  QCOMPARE(hotKeyPressText(HotKey::HideAlerts, State::Off),
           QStringLiteral("Control+Super+H is switched off: it hides all current alerts"));
  QCOMPARE(hotKeyPressText(HotKey::PrintAlerts, State::NotAvailable),
           QStringLiteral("Control+Super+P does not work outside Tockwise"));
}

void HotKeyTextTest::theKeysThemselvesAreAsked() {
  FakeHotKeys keys;
  QCOMPARE(hotKeyText(keys).line, QStringLiteral("Ready"));
  keys.registerHotKeys();
  QCOMPARE(hotKeyText(keys).line, QStringLiteral("Control+Super+M, S, H and P work"));
}

QTEST_GUILESS_MAIN(HotKeyTextTest)
#include "hot_key_text_test.moc"
