// What is left of texts that would steer a terminal or forge lines of a log.
#include "base/harmless_text.h"

#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

} // namespace

class HarmlessTextTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void lettersOfEveryLanguageStay() {
    const QString letters = text("Tee für 日本 \U0001F375");
    QCOMPARE(harmlessLine(letters), letters);
    QCOMPARE(harmlessLines(letters), letters);
  }

  void whatSteersIsShown_data() {
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("lines");
    const auto row = [](const char* name, const char* given, const char* line, const char* lines) {
      QTest::newRow(name) << text(given) << text(line) << text(lines);
    };
    row("nothing", "", "", "");
    row("escape", "a\x1b[2Jb", "a␛[2Jb", "a␛[2Jb");
    row("delete", "a\x7f", "a␡", "a␡");
    row("a control of the upper row",
        "a\xc2\x9b"
        "31m",
        "a\ufffd31m", "a\ufffd31m");
    row("carriage return", "good\rbad", "good␍bad", "good␍bad");
    row("line feed", "one\ntwo", "one␊two", "one\ntwo");
    row("tab", "one\ttwo", "one two", "one\ttwo");
    row("line separator", "one\u2028two", "one\ufffdtwo", "one\u2028two");
    row("a turned direction", "a\u202etxt.sh", "a\ufffdtxt.sh", "a\u202etxt.sh");
    row("joined letters", "می\u200cخواهم", "می\ufffdخواهم", "می\u200cخواهم");
  }
  void whatSteersIsShown() {
    QFETCH(QString, given);
    QTEST(harmlessLine(given), "line");
    QTEST(harmlessLines(given), "lines");
  }

  void allMarksThatTurnTheDirectionGo() {
    QCOMPARE(
        withoutDirections(text("\u202aa\u202bb\u202cc\u202dd\u202ee\u2066f\u2067g\u2068h\u2069i")),
        text("abcdefghi"));
  }

  void marksThatJoinOrPartLettersStay() {
    const QString joined = text("👩\u200d🌾 می\u200cخواهم שלום\u200e!");
    QCOMPARE(withoutDirections(joined), joined);
  }

  void halfAPairIsNoCharacter() {
    QCOMPARE(harmlessLine(QString(QChar(0xd83c)) + u'x'), text("\ufffdx"));
  }

  void nullIsShown() { QCOMPARE(harmlessLine(QString(QChar(u'\0'))), text("␀")); }
};

QTEST_GUILESS_MAIN(HarmlessTextTest)
#include "harmless_text_test.moc"
