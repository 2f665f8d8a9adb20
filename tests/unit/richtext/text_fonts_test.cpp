// What PostScript names say, and what is shown for them.
#include "richtext/text_fonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QTest>

using namespace tockwise;

namespace {

QString text(const char* latin) {
  return QString::fromLatin1(latin);
}

} // namespace

class TextFontsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void namesTellFamilyAndStyle_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("weight");
    QTest::addColumn<bool>("italic");
    const auto row = [](const char* name, const char* family, int weight, bool italic) {
      QTest::newRow(name) << text(name) << text(family) << weight << italic;
    };
    row("Helvetica", "Helvetica", 400, false);
    row("Helvetica-BoldOblique", "Helvetica", 700, true);
    row("HelveticaNeue", "Helvetica Neue", 400, false);
    row("HelveticaNeue-LightItalic", "Helvetica Neue", 300, true);
    row("HelveticaNeue-UltraLight", "Helvetica Neue", 200, false);
    row("Times-Roman", "Times", 400, false);
    row("TimesNewRomanPSMT", "Times New Roman", 400, false);
    row("TimesNewRomanPS-BoldItalicMT", "Times New Roman", 700, true);
    row("ArialMT", "Arial", 400, false);
    row("Arial-BoldItalicMT", "Arial", 700, true);
    row("CourierNewPS-ItalicMT", "Courier New", 400, true);
    row("Courier-Oblique", "Courier", 400, true);
    row("Menlo-Regular", "Menlo", 400, false);
    row("Monaco", "Monaco", 400, false);
    row("LucidaGrande-Bold", "Lucida Grande", 700, false);
    row("Avenir-Book", "Avenir", 400, false);
    row("Avenir-HeavyOblique", "Avenir", 800, true);
    row("AvenirNext-DemiBoldItalic", "Avenir Next", 600, true);
    row(".AppleSystemUIFont", ".AppleSystemUIFont", 400, false);
    row(".AppleSystemUIFontBoldItalic", ".AppleSystemUIFont", 700, true);
    row(".SFNSText-Semibold", ".SFNSText", 600, false);
    row("PTSans-Bold", "PT Sans", 700, false);
    row("SourceCodePro-Medium", "Source Code Pro", 500, false);
    row("HiraginoSans-W6", "Hiragino Sans", 600, false);
    row("", "", 400, false);
    row("-", "-", 400, false);
  }

  void namesTellFamilyAndStyle() {
    QFETCH(QString, name);
    const FontTraits traits = fontTraits(name);
    QTEST(traits.family, "family");
    QTEST(traits.weight, "weight");
    QTEST(traits.italic, "italic");
  }

  void traitsMakeTheNameAgain_data() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"Helvetica",
                             "Helvetica-Bold",
                             "Helvetica-Oblique",
                             "Helvetica-BoldOblique",
                             "HelveticaNeue",
                             "HelveticaNeue-Light",
                             "HelveticaNeue-MediumItalic",
                             "Times-Roman",
                             "Times-Bold",
                             "Times-Italic",
                             "Times-BoldItalic",
                             "TimesNewRomanPSMT",
                             "TimesNewRomanPS-BoldMT",
                             "TimesNewRomanPS-ItalicMT",
                             "TimesNewRomanPS-BoldItalicMT",
                             "ArialMT",
                             "Arial-BoldMT",
                             "Arial-ItalicMT",
                             "Arial-BoldItalicMT",
                             "Courier",
                             "Courier-BoldOblique",
                             "CourierNewPSMT",
                             "Menlo-Regular",
                             "Menlo-BoldItalic",
                             "Monaco",
                             "Georgia",
                             "Georgia-BoldItalic",
                             "LucidaGrande",
                             "LucidaGrande-Bold",
                             "Avenir-Book",
                             "Avenir-HeavyOblique",
                             "Avenir-BookOblique",
                             "Verdana-Italic",
                             "Palatino-Roman",
                             "HiraginoSans-W3",
                             "HiraginoSans-W6",
                             ".AppleSystemUIFont",
                             ".AppleSystemUIFontBoldItalic",
                             "DejaVuSans",
                             "DejaVuSans-BoldOblique",
                             "LiberationSans-BoldItalic",
                             "NimbusSans-Regular",
                             "PTSans",
                             "PTSans-BoldItalic"})
      QTest::newRow(name) << text(name);
  }

  void traitsMakeTheNameAgain() {
    QFETCH(QString, name);
    QCOMPARE(postScriptName(fontTraits(name)), name);
  }

  void familiesOfThisMachineGetNames() {
    QCOMPARE(postScriptName({text("DejaVu Sans"), QFont::Bold, true}),
             text("DejaVuSans-BoldOblique"));
    QCOMPARE(postScriptName({text("Nimbus Sans [urw]"), QFont::Bold, false}),
             text("NimbusSans-Bold"));
    QCOMPARE(postScriptName({text("My (odd) Font/%"), QFont::Normal, true}),
             text("MyoddFont-Italic"));
    QCOMPARE(postScriptName({QString(), QFont::Bold, false}), text("Helvetica-Bold"));
  }

  void fontsOfThisMachineAreFoundByTheirNames() {
    for (const QString& family :
         {text("DejaVu Sans"), text("DejaVu Sans Mono"), text("DejaVu Serif")}) {
      QVERIFY2(QFontDatabase::hasFamily(family), "fonts-dejavu-core is not installed");
      const QFont font = fontFor(postScriptName({family, QFont::Bold, false}), 11);
      QCOMPARE(font.families(), QStringList{family});
      QCOMPARE(font.weight(), int(QFont::Bold));
      QCOMPARE(font.pointSizeF(), 11.0);
    }
  }

  void missingFontsAreShownWithOneOfTheirKind() {
    for (const char* name : {"Menlo-Regular", "Monaco", "Courier", "SomethingMono-Bold"})
      QVERIFY2(QFontInfo(fontFor(text(name), 12)).fixedPitch(), name);
    for (const char* name : {"Helvetica", "Times-Roman", "Georgia", ".SFNSText", "", "Quux"})
      QVERIFY2(!QFontInfo(fontFor(text(name), 12)).fixedPitch(), name);
    QVERIFY(fontFor(text("Times-Roman"), 12).families() !=
            fontFor(text("Helvetica"), 12).families());
    for (const char* name : {"HelveticaNeue", "Times-Roman", "Quux-Bold"}) {
      const QFont font = fontFor(text(name), 12);
      QVERIFY2(QFontInfo(font).family().startsWith(font.families().value(0)), name);
    }
  }

  void metricCompatibleFontsArePreferred() {
    QVERIFY2(QFontDatabase::families().join(u',').contains(u"Nimbus Sans"),
             "fonts-urw-base35 is not installed");
    QCOMPARE(fontFor(text("HelveticaNeue"), 12).families(), QStringList{text("Nimbus Sans")});
    QCOMPARE(fontFor(text("Times-Roman"), 12).families(), QStringList{text("Nimbus Roman")});
    QCOMPARE(fontFor(text("Courier"), 12).families(), QStringList{text("Nimbus Mono PS")});
  }

  void sizesAreKeptWithinReason() {
    QCOMPARE(fontFor(text("Helvetica"), 1e9).pointSizeF(), 2000.0);
    QCOMPARE(fontFor(text("Helvetica"), 0.01).pointSizeF(), 0.5);
    QCOMPARE(fontFor(text("Helvetica"), 0).pointSizeF(), 12.0);
    QCOMPARE(fontFor(text("Helvetica"), qQNaN()).pointSizeF(), 12.0);
    QCOMPARE(fontFor(text("Helvetica"), 10.25).pointSizeF(), 10.25);
  }

  void textInNoParticularFontIsShownInTheDesktopsOwn() {
    const QString own = QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    for (const char* name : {"Helvetica", "Helvetica-Bold", ".SFNSText"})
      QCOMPARE(fontFor(text(name), 12).families(), QStringList{own});
    QCOMPARE(int(fontFor(text("Helvetica-Bold"), 12).weight()), int(QFont::Bold));
    QCOMPARE(postScriptName(fontTraits(text("Helvetica-Bold"))), text("Helvetica-Bold"));
  }
};

QTEST_MAIN(TextFontsTest)
#include "text_fonts_test.moc"
