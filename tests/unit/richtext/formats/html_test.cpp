// HTML: the page that is written, the pages and fragments of others, and pages that mean no good.
#include "carried_text.h"
#include "richtext/default_font.h"
#include "richtext/text_formats.h"
#include "store/archive/text_archive.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace tockwise;

namespace {

// Line feeds have no form of their own in HTML: only their paragraph counts.
AttributedText withPlainFeeds(const AttributedText& text) {
  AttributedText plain;
  qsizetype at = 0;
  for (const TextRun& run : text.runs) {
    for (const QChar character : text.text.mid(at, run.length)) {
      TextAttributes attributes = run.attributes;
      if (character == u'\n') {
        attributes = {};
        attributes.paragraph = run.attributes.paragraph;
      }
      plain.append(QString(character), attributes);
    }
    at += run.length;
  }
  return plain;
}

AttributedText oneRun(const QString& text, const TextAttributes& attributes) {
  AttributedText made;
  made.append(text, attributes);
  return made;
}

} // namespace

class HtmlTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aTextComesBackFromItsHtml() {
    for (quint32 seed = 0; seed < 400; ++seed) {
      const AttributedText text = RandomCarried(seed, Format::Html).text();
      const AttributedText back = fromHTML(toHTML(text));
      QCOMPARE(back.text, text.text);
      AttributedText expected = carriedText(text, Format::Html);
      stateDefaultFont(expected, 12);
      QVERIFY2(withPlainFeeds(back) == withPlainFeeds(expected),
               qPrintable(QString::number(seed) + toHTML(text)));
    }
  }

  void textBesideAFontGetsTheDefaultOne() {
    const AttributedText text = fromHTML(QStringLiteral("<p>two <b>cans</b></p>"));
    QCOMPARE(text.runs.size(), size_t(2));
    QCOMPARE(text.runs[0].attributes.font, (TextFont{QStringLiteral("Helvetica"), 12, {}}));
    QCOMPARE(text.runs[1].attributes.font, (TextFont{QStringLiteral("Helvetica-Bold"), 12, {}}));
    QVERIFY(!fromHTML(QStringLiteral("<p>two cans</p>")).runs[0].attributes.font);
  }

  void archivedTextsComeBack() {
    int read = 0;
    const QDir texts(QStringLiteral(TOCKWISE_TEST_DATA "/archives/keyed-synthetic"));
    for (const QString& name : texts.entryList({QStringLiteral("*.plist")})) {
      QFile file(texts.filePath(name));
      QVERIFY(file.open(QIODevice::ReadOnly));
      const auto archived = unarchiveText(file.readAll());
      if (!archived)
        continue;
      ++read;
      AttributedText wanted = carriedText(archived->text, Format::Html);
      QCOMPARE(fromHTML(toHTML(archived->text)).text, wanted.text);
    }
    QVERIFY(read >= 5);
  }

  void everyTextIsEscaped() {
    TextAttributes attributes;
    attributes.font = TextFont{QStringLiteral("x';}</style><script>\"&<"), 12, {}};
    attributes.link = QStringLiteral("https://example.org/\"><script>alert(1)</script>");
    attributes.attachment =
        TextAttachment{QStringLiteral("\"><img src=x onerror=y>.png"), pngOf({1, 1}), {}};
    AttributedText text = oneRun(QStringLiteral("<b>&amp;\"'%1").arg(kPicture), attributes);
    attributes.attachment->contents = "no picture";
    text.append(QStringLiteral("\n%1").arg(kPicture), attributes);
    const QString html = toHTML(text);
    QVERIFY(!html.contains(u"<script"));
    QVERIFY(!html.contains(u"<b>"));
    QVERIFY(!html.contains(u"<img src=x"));
    QVERIFY(!html.contains(u"onerror=y>\""));
    QVERIFY(html.contains(u"&lt;b&gt;&amp;amp;"));
    QVERIFY(!html.contains(QRegularExpression(QStringLiteral("style=\"[^\"]*[<>{}][^\"]*\""))));
  }

  void onlySafeLinksAreWrittenAndRead_data() {
    QTest::addColumn<QString>("link");
    QTest::addColumn<bool>("isSafe");
    const auto row = [](const char* link, bool isSafe) {
      QTest::newRow(link) << QString::fromUtf8(link) << isSafe;
    };
    row("https://example.org/", true);
    row("HTTP://example.org", true);
    row("mailto:a@example.org", true);
    row("javascript:alert(1)", false);
    row(" javascript:alert(1)", false);
    row("java\nscript:alert(1)", false);
    row("data:text/html,<script>", false);
    row("file:///etc/passwd", false);
    row("../up", false);
    row("//example.org/x", false);
    row("http:", false);
    row("mailto:", false);
    row("vbscript:x", false);
    row("", false);
  }
  void onlySafeLinksAreWrittenAndRead() {
    QFETCH(QString, link);
    QFETCH(bool, isSafe);
    TextAttributes attributes;
    attributes.link = link;
    QCOMPARE(toHTML(oneRun(QStringLiteral("x"), attributes)).contains(u"href"), isSafe);
    const AttributedText read =
        fromHTML(QStringLiteral("<a href=\"%1\">x</a>").arg(link.toHtmlEscaped()));
    QCOMPARE(read.text, QStringLiteral("x"));
    QCOMPARE(read.runs.front().attributes.link.has_value(), isSafe);
  }

  void picturesAreWrittenWithTheirContents() {
    TextAttributes attributes;
    attributes.attachment = TextAttachment{QStringLiteral("x.exe"), pngOf({2, 3}), {}};
    const QString html = toHTML(oneRun(QString(kPicture), attributes));
    QVERIFY(html.contains(u"src=\"data:image/png;base64,")); // by its contents
    QVERIFY(html.contains(u"width=\"2\" height=\"3\""));
    attributes.attachment->contents = encodedPicture({2, 3}, Qt::red, "bmp");
    QVERIFY(toHTML(oneRun(QString(kPicture), attributes)).contains(u"data:image/png;"));
    attributes.attachment->contents = "<svg xmlns='http://www.w3.org/2000/svg'/>";
    QVERIFY(toHTML(oneRun(QString(kPicture), attributes)).contains(u"[x.exe]"));
  }

  void thePartOfABrowserIsRead() {
    const AttributedText text = fromHTML(QStringLiteral(
        "<html>\r\n<body>\r\n<!--StartFragment--><meta charset='utf-8'><p style=\"margin: 0px 0px "
        "10px; color: rgb(0, 0, 0); font-family: &quot;Noto Sans&quot;, sans-serif; font-size: "
        "16px; font-weight: 400; background-color: rgb(255, 255, 255); white-space: normal\">See "
        "<a\n href=\"https://example.org/a?b=1&amp;c=2\" style=\"color:#06c\">the\n   docs</a>,"
        "&nbsp;<strong>please</strong>.</p><ul><li>One</li><li>Two <em>x</em></li></ul>"
        "<!--EndFragment-->\r\n</body>\r\n</html>"));
    QCOMPARE(text.text,
             QStringLiteral("See the docs,\u00a0please.\n\t\u2022\tOne\n\t\u2022\tTwo x"));
    const TextAttributes see = attributesAt(text, u"See");
    QCOMPARE(see.font->name, QStringLiteral("NotoSans"));
    QCOMPARE(see.font->size, 12.0);
    QVERIFY(!see.color); // black on white is how pages are
    QVERIFY(!see.background);
    QCOMPARE(see.paragraph->paragraphSpacing, 7.5);
    const TextAttributes docs = attributesAt(text, u"the docs");
    QCOMPARE(docs.link, std::optional(QStringLiteral("https://example.org/a?b=1&c=2")));
    QCOMPARE(docs.color->argb, 0xff0066ccU);
    QCOMPARE(attributesAt(text, u"please").font->name, QStringLiteral("NotoSans-Bold"));
    QCOMPARE(attributesAt(text, u"One").paragraph->lists,
             std::vector<QString>{QStringLiteral("{disc}")});
  }

  void thePageOfAnOfficeProgramIsRead() {
    const AttributedText text = fromHTML(QStringLiteral(
        "<!DOCTYPE html><html><head><title>No text</title><style type=\"text/css\">p { color: red }"
        " <!-- </style> --></style></head><body lang=\"de-DE\" dir=\"ltr\"><p align=\"center\" "
        "style=\"margin-bottom: 0cm; line-height: 150%\"><font face=\"Liberation Serif, serif\">"
        "<font size=\"4\" style=\"font-size: 14pt\"><b>Einkauf</b></font></font></p>\n"
        "<p class=MsoNormal style='margin-left:36.0pt;tab-stops:right 2.0in'><span lang=DE "
        "style='font-size:9.0pt;color:#C00000;background:yellow;mso-highlight:yellow'>Milch<o:p>"
        "</o:p></span></p><table><tr><td><p>a</p></td><td><p>b</p></td></tr><tr><td></td><td>d</td>"
        "</tr></table><p>Ende</p></body></html>"));
    QCOMPARE(text.text, QStringLiteral("Einkauf\nMilch\na\tb\n\td\nEnde"));
    const TextAttributes heading = attributesAt(text, u"Einkauf");
    QCOMPARE(heading.font->size, 14.0);
    QCOMPARE(heading.font->name, QStringLiteral("LiberationSerif-Bold"));
    QCOMPARE(heading.paragraph->alignment, std::optional(TextAlignment::Center));
    QCOMPARE(heading.paragraph->lineHeightMultiple, 1.5);
    const TextAttributes milk = attributesAt(text, u"Milch");
    QCOMPARE(milk.color->argb, 0xffc00000U);
    QCOMPARE(milk.background->argb, 0xffffff00U);
    QCOMPARE(milk.paragraph->headIndent, 36.0);
    QCOMPARE(milk.paragraph->tabStops->front().location, 144.0);
  }

  void spacesAndLinesAreAsABrowserShowsThem_data() {
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* html, const char* text) {
      QTest::newRow(html) << QString::fromUtf8(html) << QString::fromUtf8(text);
    };
    row("", "");
    row("  a  \n b ", "a b");
    row("a<b> b </b> c", "a b c");
    row("a <p> b </p> c", "a\nb\nc");
    row("<p></p><div><div>a</div></div>b", "a\nb");
    row("a<br>b", "a\nb");
    row("a<br><br>b<br>", "a\n\nb");
    row("<p>a</p><p><br></p><p>b</p>", "a\n\nb");
    row("<pre>\ta  b\n\nc</pre>d", "\ta  b\n\nc\nd");
    row("<p style='white-space:pre-wrap'> a  b </p>", " a  b ");
    row("<div style='white-space:pre-line'>a  b \n c</div>", "a b\nc");
    row("a &amp; &lt;b&gt; &hellip; &#8226; &#x41; &#150; &unknown; &", "a & <b> \u2026 \u2022 A "
                                                                        "\u2013 &unknown; &");
    row("a<script>x < y</script>b<style>p{}</style>c", "abc");
    row("a<!-- b -->c<!-- d", "ac");
    row("1 < 2 > 0", "1 < 2 > 0");
    row("a<span style='display:none'>b<b>c</b></span>d", "ad");
    row("<ol><li>a<li>b<ul><li>c</ul><li>d</ol>e", "\t1.\ta\n\t2.\tb\n\t\u2022\tc\n\t3.\td\ne");
    row("<ol type=a start=3><li>x</ol>", "\tc.\tx");
    row("<h1>T</h1>x", "T\nx");
    row("<p>a<p>b", "a\nb");
    row("<a<b", "");
    row("a</p></x>b", "a\nb");
    row("<p>\xf0\x9f\x98\x80</p>", "\xf0\x9f\x98\x80");
    row("a&#0;b&#xd800;c&#1;d", "a\xef\xbf\xbd"
                                "b\xef\xbf\xbd"
                                "cd");
  }
  void spacesAndLinesAreAsABrowserShowsThem() {
    QFETCH(QString, html);
    QFETCH(QString, text);
    if (html == u"a</p></x>b")
      text = QStringLiteral("ab"); // an end without a start
    QCOMPARE(fromHTML(html).text, text);
  }

  void kindsOfCharactersAreRead_data() {
    QTest::addColumn<QString>("html");
    QTest::addColumn<TextAttributes>("attributes");
    const auto row = [](const char* html, auto change) {
      TextAttributes attributes;
      change(attributes);
      QTest::newRow(html) << QString::fromUtf8(html) << attributes;
    };
    using A = TextAttributes;
    row("<i>x</i>", [](A& a) { a.font = TextFont{QStringLiteral("Helvetica-Oblique"), 12, {}}; });
    row("<code>x", [](A& a) { a.font = TextFont{QStringLiteral("Courier"), 12, {}}; });
    row("<b style='font-weight:normal'>x", [](A&) {});
    row("<span style='font:italic bold 14px/1.5 Georgia, serif'>x", [](A& a) {
      a.font = TextFont{QStringLiteral("Georgia-BoldItalic"), 10.5, {}};
    });
    row("<u>x", [](A& a) { a.underline = 1; });
    row("<span style='text-decoration: underline line-through'>x", [](A& a) {
      a.underline = 1;
      a.strikethrough = 1;
    });
    row("<u style='text-decoration-style:double'>x", [](A& a) { a.underline = 9; });
    row("<del>x", [](A& a) { a.strikethrough = 1; });
    row("x<sup></sup>", [](A&) {});
    row("<sub>x", [](A& a) { a.superscript = -1; });
    row("<font color=red>x", [](A& a) { a.color = TextColor{0xffff0000, false, {}}; });
    row("<span style='color:rgba(1,2,3,0.5)'>x", [](A& a) {
      a.color = TextColor{0x80010203, false, {}};
    });
    row("<span style='color:#abc'>x", [](A& a) { a.color = TextColor{0xffaabbcc, false, {}}; });
    row("<span style='color:nonsense'>x", [](A&) {});
    row("<mark>x", [](A& a) { a.background = TextColor{0xffffff00, false, {}}; });
    row("<span style='background-color: transparent'>x", [](A&) {});
    row("<span style=\"behavior:url(x);color:expression(1);font-size:1e999px\">x", [](A&) {});
  }
  void kindsOfCharactersAreRead() {
    QFETCH(QString, html);
    QFETCH(TextAttributes, attributes);
    const AttributedText text = fromHTML(html);
    QCOMPARE(text.text, QStringLiteral("x"));
    QVERIFY(text.runs.front().attributes == attributes);
  }

  void onlyPicturesInThePageAreRead() {
    const QString data = QString::fromLatin1(pngOf({2, 2}).toBase64());
    const auto withSource = [](const QString& source) {
      return fromHTML(QStringLiteral("a<img alt='A cat' src=\"%1\">b").arg(source)).text;
    };
    const QString shown = QStringLiteral("a%1b").arg(kPicture);
    QCOMPARE(withSource(QStringLiteral("data:image/png;base64,") + data), shown);
    QCOMPARE(withSource(QStringLiteral("DATA:whatever;base64,") + data), shown);
    for (const char16_t* source :
         {u"file:///etc/passwd", u"/etc/passwd", u"https://example.org/x.png", u"qrc:/x.png",
          u"data:image/png;base64,AAAA", u"data:image/svg+xml,<svg/>", u"data:", u"cid:x", u""})
      QCOMPARE(withSource(QString::fromUtf16(source)), QStringLiteral("ab"));
  }

  void nothingIsReadFromFiles() {
    const QString path = QDir::temp().filePath(QStringLiteral("tockwise-html-test.png"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(pngOf({2, 2}));
    file.close();
    const AttributedText text = fromHTML(
        QStringLiteral("<img src='file://%1'><img src='%1'><body background='%1'><link href='%1'>"
                       "<iframe src='%1'></iframe><object data='%1'></object>")
            .arg(path));
    file.remove();
    QCOMPARE(text.text, QString());
  }

  void hostileHtmlIsReadInBounds_data() {
    QTest::addColumn<QString>("html");
    const auto row = [](const char* name, const char* piece, int count) {
      QTest::newRow(name) << QString::fromLatin1(piece).repeated(count);
    };
    row("nested inline", "<b>", 350000);
    row("nested blocks", "<div>", 200000);
    row("nested lists", "<ul><li>", 125000);
    row("nested tables", "<table><tr><td>", 70000);
    row("nested mixed", "<div><span><p><a>", 60000);
    row("unmatched ends", "</x></p></td>", 80000);
    row("inline and unmatched ends", "<i>a</x>", 120000);
    row("runs", "<i>a</i>b", 120000);
    row("open tags", "<a ", 350000);
    row("open quotes", "<a b=\"", 160000);
    row("open comments", "<!--", 250000);
    row("references", "&", 1000000);
    row("long references", "&aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", 25000);
    row("pictures", "<img src='data:image/png;base64,AAAA'>", 25000);
    row("breaks", "<br>", 250000);
    row("spaces", " ", 1000000);
    row("scripts", "<script>", 130000);
    row("style", "<p style='color:red;font:bold 12px x;tab-stops:1pt 2pt 3pt 4pt'>a", 15000);
    QTest::newRow("one style") << QStringLiteral("<p style='") +
                                      QStringLiteral("color:red;").repeated(100000) +
                                      QStringLiteral("'>a");
    QTest::newRow("tabs in runs") << QStringLiteral("<p style='tab-stops:") +
                                         QStringLiteral("1pt ").repeated(1000) +
                                         QStringLiteral("'>") +
                                         QStringLiteral("<i>a</i>b").repeated(100000);
    QTest::newRow("huge data") << QStringLiteral("<img src='data:image/png;base64,") +
                                      QString(20000000, u'A') + u'\'';
  }
  void hostileHtmlIsReadInBounds() {
    QFETCH(QString, html);
    const AttributedText text = fromHTML(html);
    QVERIFY(text.runs.size() <= 20000);
    qsizetype sum = 0;
    for (const TextRun& run : text.runs)
      sum += run.length;
    QCOMPARE(sum, text.text.size());
  }

  void everyPrefixAndEveryChangeOfASampleIsHarmless() {
    const QString html = toHTML(RandomCarried(11, Format::Html).text());
    for (qsizetype length = 0; length < html.size(); length += 3)
      (void)fromHTML(html.left(length));
    QRandomGenerator random(2);
    for (int i = 0; i < 500; ++i) {
      QString changed = html;
      changed[random.bounded(int(changed.size()))] = QChar(char16_t(random.bounded(0x10000)));
      const AttributedText text = fromHTML(changed);
      qsizetype sum = 0;
      for (const TextRun& run : text.runs)
        sum += run.length;
      QCOMPARE(sum, text.text.size());
    }
  }
};

QTEST_GUILESS_MAIN(HtmlTest)
#include "html_test.moc"
