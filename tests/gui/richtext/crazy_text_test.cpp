#include "gui/richtext/view_fixture.h"
#include "support/log_lines.h"
#include "support/pictures.h"

#include <QColor>
#include <QSet>

using namespace tockwise;

namespace {

/// Chance that always gives the same, and remembers what it was asked.
struct Loaded {
  CrazyChance chance(int value, double part) {
    return {[this, value](int most) {
              bounds.push_back(most);
              return std::min(value, most);
            },
            [part] { return part; }};
  }
  QList<int> bounds;
};

QList<QFont> fonts() {
  QFont bold(QStringList{QStringLiteral("DejaVu Serif")});
  bold.setWeight(QFont::Bold);
  return {QFont(QStringList{QStringLiteral("First")}),
          QFont(QStringList{QStringLiteral("DejaVu Sans")}), bold};
}

} // namespace

class CrazyTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }

  void withoutASelectionNothingHappens() {
    ShownView shown;
    shown.type(QStringLiteral("abc"));
    const AttributedText before = shown.view.text();
    Loaded loaded;
    shown.view.crazyText(fonts(), loaded.chance(0, 0));
    QCOMPARE(shown.view.text(), before);
    QVERIFY(loaded.bounds.isEmpty());
  }

  void theLeastOfEverything() {
    ShownView shown;
    shown.type(QStringLiteral("abc"));
    shown.select(1, 2);
    Loaded loaded;
    shown.view.crazyText(fonts(), loaded.chance(0, 0.0));
    // One font beyond the first of three: 0 or 1; each colour 0 to 55553.
    QCOMPARE(loaded.bounds, (QList<int>{1, 55553, 55553, 55553}));
    const QTextCharFormat format = shown.formatAt(1);
    QCOMPARE(format.fontFamilies().toStringList(), QStringList{QStringLiteral("DejaVu Sans")});
    QCOMPARE(format.fontPointSize(), 17.0);
    QCOMPARE(format.foreground().color(),
             QColor::fromRgbF(1 / 65535.0F, 1 / 65535.0F, 1 / 65535.0F));
    QCOMPARE(format.foreground().color().alphaF(), 1.0F);
    QVERIFY(!shown.formatAt(0).hasProperty(QTextFormat::FontPointSize));
    QVERIFY(!shown.formatAt(2).hasProperty(QTextFormat::FontPointSize));
  }

  void theMostOfEverything() {
    ShownView shown;
    shown.type(QStringLiteral("abc"));
    shown.view.selectAll();
    Loaded loaded;
    shown.view.crazyText(fonts(), loaded.chance(1'000'000, std::nextafter(1.0, 0.0)));
    const QTextCharFormat format = shown.formatAt(2);
    QCOMPARE(format.fontFamilies().toStringList(), QStringList{QStringLiteral("DejaVu Serif")});
    QCOMPARE(format.fontWeight(), int(QFont::Bold));
    QCOMPARE(format.fontPointSize(), 36.0);
    const float most = 55554 / 65535.0F;
    QCOMPARE(format.foreground().color(), QColor::fromRgbF(most, most, most));
  }

  void sizesAreRounded() {
    ShownView shown;
    shown.type(QStringLiteral("a"));
    shown.view.selectAll();
    shown.view.crazyText(fonts(), Loaded().chance(0, 0.5)); // 17 + 9.5
    QCOMPARE(shown.formatAt(0).fontPointSize(), 27.0);
  }

  void attachmentsAreLeftAndLogged() {
    AttributedText text = plainText(QStringLiteral("a"));
    const AttributedText picture = pictureText(pngOf({20, 20}));
    text.append(picture.text, picture.runs[0].attributes);
    ShownView shown;
    shown.view.setText(text);
    shown.view.selectAll();
    QTest::ignoreMessage(QtInfoMsg, "Ignoring attachment for crazy text conversion.");
    shown.view.crazyText(fonts(), Loaded().chance(3, 0.1));
    const AttributedText after = shown.view.text();
    QCOMPARE(after.text, text.text);
    QCOMPARE(after.runs.back().attributes, text.runs.back().attributes);
    QVERIFY(after.runs.front().attributes.color);
  }

  void otherAttributesStay() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("a"), QStringLiteral("https://example.org")));
    shown.view.selectAll();
    shown.view.crazyText(fonts(), Loaded().chance(3, 0.1));
    QCOMPARE(shown.view.text().runs[0].attributes.link, QStringLiteral("https://example.org"));
  }

  void theSelectionStaysAndOneUndoTakesItBack() {
    ShownView shown;
    shown.type(QStringLiteral("a word and more"));
    const AttributedText before = shown.view.text();
    shown.select(2, 6);
    shown.view.crazyText();
    QCOMPARE(shown.view.textCursor().selectedText(), QStringLiteral("word"));
    QVERIFY(shown.view.text() != before);
    shown.view.undo();
    QCOMPARE(shown.view.text(), before);
    shown.view.redo();
    QVERIFY(shown.view.text() != before);
  }

  void pairsOfSurrogatesStayWhole() {
    ShownView shown;
    shown.view.setReminderText(QStringLiteral("a😀b"));
    shown.view.selectAll();
    shown.view.crazyText();
    const AttributedText after = shown.view.text();
    QCOMPARE(after.text, QStringLiteral("a😀b"));
    qsizetype at = 0;
    for (const TextRun& run : after.runs) {
      QVERIFY(at != 2);
      at += run.length;
    }
  }

  void theSystemsChanceStaysWithinItsBounds() {
    const CrazyChance chance = systemChance();
    QSet<int> seen;
    for (int i = 0; i < 1000; ++i) {
      const int value = chance.upTo(3);
      QVERIFY(value >= 0 && value <= 3);
      seen += value;
      const double part = chance.part();
      QVERIFY(part >= 0 && part < 1);
    }
    QCOMPARE(seen.size(), 4);
  }

  void theInstalledFontsAreMany() { QVERIFY(installedFonts().size() > 1); }
};

QTEST_MAIN(CrazyTextTest)
#include "crazy_text_test.moc"
