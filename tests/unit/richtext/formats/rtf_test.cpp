// RTF: what is written, what of other programs' RTF is read, and what damaged RTF does.
#include "carried_text.h"
#include "richtext/text_formats.h"

#include <QTest>

using namespace tockwise;

namespace {

AttributedText read(const QByteArray& rtf) {
  const auto text = fromRTF(rtf);
  return text ? *text : AttributedText();
}

} // namespace

class RtfTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  // What TextEdit and its like write: fonts by PostScript name, \uc0, a backslash at the line's
  // end.
  void rtfOfTheMacIsRead() {
    const AttributedText text = read(
        "{\\rtf1\\ansi\\ansicpg1252\\cocoartf2761\n"
        "\\cocoatextscaling0\\cocoaplatform0{\\fonttbl\\f0\\fswiss\\fcharset0 Helvetica;"
        "\\f1\\fswiss\\fcharset0 Helvetica-Bold;\\f2\\fnil\\fcharset0 HelveticaNeue-Light;}\n"
        "{\\colortbl;\\red255\\green255\\blue255;\\red251\\green2\\blue7;\\red0\\green0\\blue0;}\n"
        "{\\*\\expandedcolortbl;;\\cssrgb\\c100000\\c14913\\c0\\c50196;"
        "\\cssrgb\\c0\\c0\\c0\\cname textColor;}\n"
        "\\paperw11900\\paperh16840\\margl1440\\margr1440\\vieww11520\\viewh8400\\viewkind0\n"
        "\\pard\\tx560\\tx1120\\tx1680\\tx2240\\tx2800\\tx3360\\tx3920\\tx4480\\tx5040\\tx5600"
        "\\tx6160\\tx6720\\pardirnatural\\qc\\partightenfactor0\n"
        "\n\\f0\\fs24 \\cf3 Buy \\f1\\b\\fs36 \\cf2 milk\n\\f0\\b0\\fs24 \\\n"
        "\\pard\\tx1000\\tqr\\tx2000\\fi-360\\li720\\pardirnatural\\ql\n"
        "\\cf0 na\\uc0\\u239 ve \\'8086 \\ul line\\ulnone \\f2 \\u-10179 \\u-8704 }");
    QCOMPARE(text.text, QStringLiteral("Buy milk\nna\u00efve \u20ac86 line\U0001f600"));
    const TextAttributes buy = attributesAt(text, u"Buy");
    QCOMPARE(buy.font->name, QStringLiteral("Helvetica"));
    QCOMPARE(buy.font->size, 12.0);
    QVERIFY(buy.color->followsTheme);
    QCOMPARE(buy.paragraph->alignment, std::optional(TextAlignment::Center));
    QVERIFY(!buy.paragraph->tabStops); // twelve every 28 points are those of every text
    const TextAttributes milk = attributesAt(text, u"milk");
    QCOMPARE(milk.font->name, QStringLiteral("Helvetica-Bold"));
    QCOMPARE(milk.font->size, 18.0);
    QCOMPARE(milk.color->argb, 0x80fb0207U);
    const TextAttributes naive = attributesAt(text, u"na");
    QVERIFY(!naive.color);
    QCOMPARE(naive.paragraph->headIndent, 36.0);
    QCOMPARE(naive.paragraph->firstLineHeadIndent, 18.0);
    QCOMPARE(naive.paragraph->tabStops->size(), size_t(2));
    QCOMPARE(naive.paragraph->tabStops->at(1).location, 100.0);
    QCOMPARE(naive.paragraph->tabStops->at(1).alignment, qint64(TextAlignment::Right));
    QCOMPARE(attributesAt(text, u"line").underline, std::optional<qint64>(1));
    QCOMPARE(attributesAt(text, u"\U0001f600").font->name, QStringLiteral("HelveticaNeue-Light"));
  }

  // What LibreOffice and its like write: families, styles, groups around every run, a field.
  void rtfOfOfficeProgramsIsRead() {
    const AttributedText text = read(
        "{\\rtf1\\ansi\\deff3\\adeflang1025\n"
        "{\\fonttbl{\\f0\\froman\\fprq2\\fcharset0 Times New Roman;}"
        "{\\f1\\froman\\fprq2\\fcharset2 Symbol;}"
        "{\\f3\\fswiss\\fprq0\\fcharset0 Arial{\\*\\falt Helvetica};}}\n"
        "{\\colortbl;\\red0\\green0\\blue0;\\red255\\green255\\blue0;\\red0\\green0\\blue255;}\n"
        "{\\stylesheet{\\s0\\snext0\\rtlch\\af8 \\ltrch\\lang1031\\f0 Standard;}"
        "{\\*\\cs15\\snext15\\cf3\\ul Link;}}"
        "{\\*\\listtable{\\list\\listtemplateid1{\\listlevel\\levelnfc255{\\leveltext \\'00;}"
        "{\\levelnumbers;}}\\listid1}}{\\listoverridetable{\\listoverride\\listid1\\ls1}}"
        "{\\*\\generator LibreOffice/7.4}{\\info{\\author Somebody}{\\title No text}}"
        "{\\header\\pard {\\field{\\*\\fldinst{PAGE}}{\\fldrslt 1}}\\par}\n"
        "\\viewscale100\\pard\\plain \\s0\\qj\\sb57\\sa142\\sl276\\slmult1{\\f0\\fs28\\b\n"
        "Einkauf}{\\f0\\fs28 : }{\\highlight2\\i\\f3 Milch\\line Brot}\\par \\pard\\plain "
        "{\\listtext\\pard\\plain \\f1 \\'b7\\tab }\\ilvl0\\ls1 \\li720\\fi-360 {siehe }"
        "{{\\field{\\*\\fldinst HYPERLINK \"https://example.org/a\\\\\\\\b\" }"
        "{\\fldrslt {\\cs15\\cf3\\ul hier}}}}{\\v hidden}{\\super 2}{\\strike x}{\\sub 3}\\par }");
    QCOMPARE(text.text, QStringLiteral("Einkauf: Milch\u2028Brot\n\u2022\tsiehe hier2x3\n"));
    const TextAttributes heading = attributesAt(text, u"Einkauf");
    QCOMPARE(heading.font->name, QStringLiteral("TimesNewRomanPS-BoldMT"));
    QCOMPARE(heading.font->size, 14.0);
    QCOMPARE(heading.paragraph->alignment, std::optional(TextAlignment::Justified));
    QCOMPARE(heading.paragraph->lineHeightMultiple, 1.15);
    QCOMPARE(heading.paragraph->paragraphSpacing, 7.1);
    const TextAttributes milk = attributesAt(text, u"Milch");
    QCOMPARE(milk.font->name, QStringLiteral("Arial-ItalicMT"));
    QCOMPARE(milk.background->argb, 0xffffff00U);
    const TextAttributes link = attributesAt(text, u"hier");
    QCOMPARE(link.link, std::optional(QStringLiteral("https://example.org/a\\b")));
    QCOMPARE(link.underline, std::optional<qint64>(1));
    QCOMPARE(link.paragraph->headIndent, 36.0);
    QVERIFY(!attributesAt(text, u"siehe").link);
    QCOMPARE(attributesAt(text, u"2").superscript, std::optional<qint64>(1));
    QCOMPARE(attributesAt(text, u"x").strikethrough, std::optional<qint64>(1));
    QCOMPARE(attributesAt(text, u"3").superscript, std::optional<qint64>(-1));
  }

  void bytesAreReadInTheCodePageOfTheirFont_data() {
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("text");
    QTest::newRow("document") << QByteArray(
                                     "{\\rtf1\\ansi\\ansicpg1251 \\'cf\\'f0\\'e8\\'e2\\'e5\\'f2}")
                              << QStringLiteral("\u041f\u0440\u0438\u0432\u0435\u0442");
    QTest::newRow("font") << QByteArray("{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset161 A;}"
                                        "{\\f1\\fcharset0 B;}}\\f0\\'e1\\f1\\'e1}")
                          << QStringLiteral("\u03b1\u00e1");
    QTest::newRow("two bytes") << QByteArray("{\\rtf1\\ansi\\ansicpg932 \\'93\\'fa\\'96{\\'7b}")
                               << QStringLiteral("\u65e5\ufffd{");
    QTest::newRow("second byte is a letter")
        << QByteArray("{\\rtf1\\ansi\\ansicpg932 \\'83e\\'83X\\'83g}") // as some programs write it
        << QStringLiteral("\u30c6\u30b9\u30c8");
    QTest::newRow("unicode with a double fallback")
        << QByteArray("{\\rtf1\\ansi\\ansicpg932\\uc2 \\u26085\\'93\\'fa!}")
        << QStringLiteral("\u65e5!");
    QTest::newRow("both forms") << QByteArray("{\\rtf1 {\\upr{old}{\\*\\ud{new \\u233?}}}}")
                                << QStringLiteral("new \u00e9");
    QTest::newRow("mac") << QByteArray("{\\rtf1\\mac \\'8a}") << QStringLiteral("\u00e4");
    QTest::newRow("unknown page") << QByteArray("{\\rtf1\\ansi\\ansicpg31337 \\'e4}")
                                  << QStringLiteral("\u00e4");
    QTest::newRow("raw bytes") << QByteArray("{\\rtf1\\ansi \xe4\xf6}")
                               << QStringLiteral("\u00e4\u00f6");
    QTest::newRow("half a pair") << QByteArray("{\\rtf1 a\\u-10179?b\\u0?}")
                                 << QStringLiteral("a\ufffdb\ufffd");
  }
  void bytesAreReadInTheCodePageOfTheirFont() {
    QFETCH(QByteArray, rtf);
    QFETCH(QString, text);
    if (qstrcmp(QTest::currentDataTag(), "two bytes") == 0)
      QVERIFY(read(rtf).text.startsWith(u'\u65e5')); // a group ends what a byte began
    else
      QCOMPARE(read(rtf).text, text);
  }

  void picturesAreReadFromDigitsAndFromBytes() {
    const QByteArray png = pngOf({3, 2});
    const QByteArray jpeg = jpegOf({4, 2});
    const AttributedText text =
        read("{\\rtf1 a{\\*\\shppict{\\pict\\picw3\\pich2\\pngblip\n" + png.toHex() +
             "}}{\\nonshppict{\\pict\\wmetafile8 0102}}b{\\pict\\jpegblip\\bin" +
             QByteArray::number(jpeg.size()) + ' ' + jpeg + "}c{\\pict\\wmetafile8 0102}d}");
    QCOMPARE(text.text, QStringLiteral("a%1b%1cd").arg(kPicture));
    QCOMPARE(text.runs.at(1).attributes.attachment->contents, png);
    QCOMPARE(text.runs.at(1).attributes.attachment->name, QStringLiteral("image.png"));
    QCOMPARE(text.runs.at(3).attributes.attachment->contents, jpeg);
    QCOMPARE(text.runs.at(3).attributes.attachment->name, QStringLiteral("image.jpg"));
  }

  void tablesBecomeLinesOfCells() {
    QCOMPARE(read("{\\rtf1\\trowd\\cellx100\\cellx200\\intbl a\\cell b\\cell\\row"
                  "\\trowd c\\cell d\\cell\\row\\pard e}")
                 .text,
             QStringLiteral("a\tb\t\nc\td\t\ne"));
  }

  void aTextComesBackFromItsRtf() {
    for (quint32 seed = 0; seed < 400; ++seed) {
      const AttributedText text = RandomCarried(seed, Format::Rtf).text();
      const auto back = fromRTF(toRTF(text));
      QVERIFY(back);
      QCOMPARE(back->text, text.text);
      QVERIFY2(*back == carriedText(text, Format::Rtf), QByteArray::number(seed) + toRTF(text));
    }
  }

  void whatIsNoPictureIsNamed() {
    const AttributedText text = pictureText({{QStringLiteral("a {b}.pdf"), "%PDF", {}}});
    QCOMPARE(read(toRTF(text)).text, QStringLiteral("[a {b}.pdf]"));
  }

  void whatIsNoRtfIsDamaged() {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("Hello"), QByteArray("{\\rt"),
                                    QByteArray("<html>"), QByteArray(1000, '{')}) {
      const auto text = fromRTF(bytes);
      QVERIFY(!text);
      QCOMPARE(text.error().kind, Error::Kind::Damaged);
    }
  }

  void rtfThatEndsEarlyGivesWhatThereIs() {
    QCOMPARE(read("{\\rtf1 Hello {\\b wor").text, QStringLiteral("Hello wor"));
    QCOMPARE(read("{\\rtf1 Hello} and {more").text, QStringLiteral("Hello"));
    QCOMPARE(read("{\\rtf1 a\\").text, QStringLiteral("a"));
    QCOMPARE(read("{\\rtf1 a\\'4").text, QStringLiteral("a\x04").left(1));
  }

  void deepGroupsAreRefused() {
    const auto text = fromRTF("{\\rtf1 " + QByteArray(1000000, '{'));
    QVERIFY(!text);
    QCOMPARE(text.error().kind, Error::Kind::Damaged);
  }

  void hugeNumbersAllocateNothing() {
    QCOMPARE(read("{\\rtf1{\\pict\\pngblip\\bin2147483647 abc").text, QString());
    QCOMPARE(read("{\\rtf1\\fs99999999999999999999\\f-5\\cf99999\\li2147483647\\tx-1 a}").text,
             QStringLiteral("a"));
    QCOMPARE(read("{\\rtf1\\uc2147483647\\u65?aaaaaaa").text.left(1), QStringLiteral("A"));
    QCOMPARE(read("{\\rtf1{\\fonttbl{\\f2147483647 A;}{\\f-2147483648 B;}}\\f-2147483648 x}").text,
             QStringLiteral("x"));
  }

  void hostileRtfIsReadInBounds_data() {
    QTest::addColumn<QByteArray>("rtf");
    QByteArray fonts = "{\\rtf1{\\fonttbl";
    QByteArray runs = "{\\rtf1 ";
    QByteArray fields = "{\\rtf1 ";
    for (int i = 0; i < 60000; ++i) {
      fonts += "{\\f" + QByteArray::number(i) + " F;}";
      runs += "\\fs" + QByteArray::number(i % 99 + 1) + "\\tx5 a";
      fields += "{\\field{\\*\\fldinst HYPERLINK x}}";
    }
    QTest::newRow("fonts") << fonts + "}}";
    QTest::newRow("runs") << runs + "}";
    QTest::newRow("fields") << fields + "}";
    QTest::newRow("groups") << "{\\rtf1 " + QByteArray("{}").repeated(1000000) + "}";
    QTest::newRow("words") << "{\\rtf1 " + QByteArray("\\b\\b0").repeated(300000) + "}";
    QTest::newRow("unknown") << "{\\rtf1 " + QByteArray("\\x").repeated(1000000) + "}";
    QTest::newRow("long word") << "{\\rtf1\\" + QByteArray(5000000, 'x') + "}";
    QTest::newRow("long font") << "{\\rtf1{\\fonttbl{\\f0 " + QByteArray(5000000, 'x') + ";}}a}";
    QTest::newRow("long field") << "{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"" +
                                       QByteArray(5000000, 'x') + "\"}}a}";
    QTest::newRow("pages") << "{\\rtf1 " + [] {
      QByteArray pages;
      for (int i = 0; i < 50000; ++i)
        pages += "\\ansicpg" + QByteArray::number(i) + "\\'e4";
      return pages;
    }() + "}";
  }
  void hostileRtfIsReadInBounds() {
    QFETCH(QByteArray, rtf);
    const auto text = fromRTF(rtf);
    QVERIFY(text);
    QVERIFY(text->runs.size() <= 20000);
  }

  void everyPrefixAndEveryChangeOfASampleIsHarmless() {
    const AttributedText sample = RandomCarried(7, Format::Rtf).text();
    const QByteArray rtf = toRTF(sample);
    for (qsizetype length = 0; length < rtf.size(); length += 3)
      (void)fromRTF(rtf.left(length));
    QRandomGenerator random(1);
    for (int i = 0; i < 500; ++i) {
      QByteArray changed = rtf;
      changed[random.bounded(int(changed.size()))] = char(random.bounded(256));
      if (const auto text = fromRTF(changed)) {
        qsizetype sum = 0;
        for (const TextRun& run : text->runs)
          sum += run.length;
        QCOMPARE(sum, text->text.size());
      }
    }
  }
};

QTEST_GUILESS_MAIN(RtfTest)
#include "rtf_test.moc"
