// Texts of others within a line of our own.
#include "base/line_of_text.h"

#include <QTest>

using namespace tockwise;

class LineOfTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void lettersOfEveryLanguageStay() {
    const QString text = QString::fromUtf8("Tee für 日本 \U0001F375");
    QCOMPARE(harmlessLine(text), text);
  }

  void theLogGetsOneLineWithoutControls() {
    QCOMPARE(harmlessLine(QStringLiteral("a\tb\nc\u001b[31m\u202ed\u2028e")),
             QStringLiteral("a b\u240ac\u241b[31m\ufffdd\ufffde"));
  }

  void allMarksThatTurnTheDirectionGo() {
    QCOMPARE(withoutDirections(
                 QStringLiteral("\u202aa\u202bb\u202cc\u202dd\u202ee\u2066f\u2067g\u2068h\u2069i")),
             QStringLiteral("abcdefghi"));
  }

  void marksWithinWordsStayWithoutTurningThem() {
    // Joined emoji, Persian with a narrow break, Hebrew with its own direction.
    const QString text = QString::fromUtf8("👩‍🌾 می‌خواهم שלום \u200e!");
    QCOMPARE(withoutDirections(text), text);
  }
};

QTEST_GUILESS_MAIN(LineOfTextTest)
#include "line_of_text_test.moc"
