// What edits change of a rich text, and what they leave.
#include "edited_document.h"
#include "richtext/character_formats.h"

#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

using namespace tockwise;

class TextEditingTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void boldKeepsTheFamily_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Helvetica") << text("Helvetica") << text("Helvetica-Bold");
    QTest::newRow("oblique") << text("Helvetica-Oblique") << text("Helvetica-BoldOblique");
    QTest::newRow("italic") << text("Georgia-Italic") << text("Georgia-BoldItalic");
    QTest::newRow("Times") << text("Times-Roman") << text("Times-Bold");
    QTest::newRow("Times New") << text("TimesNewRomanPSMT") << text("TimesNewRomanPS-BoldMT");
    QTest::newRow("Arial") << text("ArialMT") << text("Arial-BoldMT");
    QTest::newRow("Menlo") << text("Menlo-Regular") << text("Menlo-Bold");
    QTest::newRow("system") << text(".AppleSystemUIFont") << text(".AppleSystemUIFontBold");
    QTest::newRow("unknown") << text("Quux-Light") << text("Quux-Bold");
    QTest::newRow("one member") << text("Monaco") << text("Monaco");
  }

  void boldKeepsTheFamily() {
    QFETCH(QString, name);
    Document document(textWith(text("some words"), withFont(name, 13)));
    document.merge(0, 4, bold());
    const AttributedText changed = textOf(document);
    QTEST(changed.runs.front().attributes.font->name, "expected");
    QCOMPARE(changed.runs.front().attributes.font->size, 13.0);
    if (changed.runs.size() > 1)
      QCOMPARE(changed.runs.back().attributes.font->name, name);
  }

  void boldOfTextWithoutAFontIsOfTheDefaultOne() {
    Document document(textWith(text("words")));
    QFont font = document.defaultFont();
    font.setPointSizeF(11);
    document.setDefaultFont(font);
    document.merge(0, 5, bold());
    QCOMPARE(document.attributes().font->name, text("Helvetica-Bold"));
    QCOMPARE(document.attributes().font->size, 11.0);
  }

  void boldAndBackIsNoChange() {
    const AttributedText original = textWith(text("some words"), everything());
    Document document(original);
    document.merge(0, 4, bold());
    QVERIFY(textOf(document) != original);
    QTextCharFormat regular;
    regular.setFontWeight(QFont::Normal);
    document.merge(0, 4, regular);
    QVERIFY(textOf(document) == original);
  }

  void anotherSizeOrFamilyIsTheOnlyChange() {
    Document document(textWith(text("words"), everything()));
    QTextCharFormat size;
    size.setFontPointSize(20);
    document.merge(0, 5, size);
    TextAttributes expected = everything();
    expected.font = TextFont{text("HelveticaNeue"), 20, {}};
    QVERIFY(document.attributes() == expected);
    QTextCharFormat family;
    family.setFontFamilies({text("DejaVu Serif")});
    document.merge(0, 5, family);
    expected.font->name = text("DejaVuSerif");
    QVERIFY(document.attributes() == expected);
  }

  void aFontThatIsMissingHereIsShownWithACloseOne() {
    Document document(textWith(text("words"), withFont(text("Zapf-Of-No-Machine-Bold"), 13)));
    const QTextCharFormat format = document.begin().begin().fragment().charFormat();
    QVERIFY(QFontInfo(format.font()).bold());
    QCOMPARE(format.fontPointSize(), 13.0);
    QCOMPARE(document.attributes().font->name, text("Zapf-Of-No-Machine-Bold"));
  }

  void eachAttributeCanBeSetAndTakenAway_data() {
    QTest::addColumn<QTextCharFormat>("set");
    QTest::addColumn<QTextCharFormat>("removed");
    QTextCharFormat set;
    QTextCharFormat removed;
    const auto row = [&](const char* name) {
      QTest::newRow(name) << set << removed;
      set = {};
      removed = {};
    };
    set.setForeground(Qt::red);
    removed.setForeground(Qt::NoBrush);
    row("colour");
    set.setBackground(Qt::yellow);
    removed.setBackground(Qt::NoBrush);
    row("background");
    set.setFontUnderline(true);
    removed.setFontUnderline(false);
    row("underline");
    set.setUnderlineStyle(QTextCharFormat::DotLine);
    removed.setUnderlineStyle(QTextCharFormat::NoUnderline);
    row("dotted underline");
    set.setFontStrikeOut(true);
    removed.setFontStrikeOut(false);
    row("strike-through");
    set.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    removed.setVerticalAlignment(QTextCharFormat::AlignNormal);
    row("superscript");
    set = linkFormat(text("https://example.org/"));
    removed = linkFormat(QString());
    row("link");
  }

  void eachAttributeCanBeSetAndTakenAway() {
    QFETCH(QTextCharFormat, set);
    QFETCH(QTextCharFormat, removed);
    const AttributedText plain = textWith(text("words"));
    Document document(plain);
    document.merge(0, 5, set);
    const AttributedText changed = textOf(document);
    QVERIFY(changed != plain);
    Document again(changed);
    QVERIFY(textOf(again) == changed);
    again.merge(0, 5, removed);
    QVERIFY(textOf(again) == plain);
  }

  void attributesGoAwayWhereTheyCameFromAnArchiveToo() {
    Document document(textWith(text("words"), everything()));
    QTextCharFormat none;
    none.setForeground(Qt::NoBrush);
    none.setBackground(Qt::NoBrush);
    none.setFontUnderline(false);
    none.setFontStrikeOut(false);
    none.setVerticalAlignment(QTextCharFormat::AlignNormal);
    document.merge(0, 5, none);
    TextAttributes expected;
    expected.font = everything().font;
    expected.others = everything().others;
    expected.paragraph = everything().paragraph;
    QVERIFY(document.attributes() == expected);
  }

  void coloursOfTheThemeAreNotShownAsColours() {
    TextAttributes attributes;
    attributes.color = TextColor{0xff000000, true, opaqueObject(1)};
    attributes.background = TextColor{0xffffffff, true, opaqueObject(2)};
    const AttributedText original = textWith(text("words"), attributes);
    Document document(original);
    const QTextCharFormat format = document.begin().begin().fragment().charFormat();
    QCOMPARE(format.foreground().style(), Qt::NoBrush);
    QCOMPARE(format.background().style(), Qt::NoBrush);
    QVERIFY(textOf(document) == original);
    QTextCharFormat black;
    black.setForeground(Qt::black);
    document.merge(0, 5, black);
    QVERIFY(document.attributes().color == TextColor({0xff000000, false, {}}));
  }

  void kindsOfUnderlinesAreShownAsNearAsCanBe_data() {
    QTest::addColumn<qint64>("stored");
    QTest::addColumn<int>("shown");
    const auto row = [](const char* name, qint64 stored, QTextCharFormat::UnderlineStyle shown) {
      QTest::newRow(name) << stored << int(shown);
    };
    row("none", 0, QTextCharFormat::NoUnderline);
    row("single", 1, QTextCharFormat::SingleUnderline);
    row("double", 9, QTextCharFormat::SingleUnderline);
    row("dotted", 0x101, QTextCharFormat::DotLine);
    row("dashed", 0x201, QTextCharFormat::DashUnderline);
    row("dash-dotted", 0x302, QTextCharFormat::DashDotLine);
    row("dash-dot-dotted by word", 0x8409, QTextCharFormat::DashDotDotLine);
  }

  void kindsOfUnderlinesAreShownAsNearAsCanBe() {
    QFETCH(qint64, stored);
    TextAttributes attributes;
    attributes.underline = stored;
    Document document(textWith(text("words"), attributes));
    QTEST(int(document.begin().begin().fragment().charFormat().underlineStyle()), "shown");
    QCOMPARE(*document.attributes().underline, stored);
  }

  void aLinkShowsAsOneWithoutBeingUnderlinedInTheArchive() {
    TextAttributes attributes;
    attributes.link = text("https://example.org/");
    attributes.linkOriginal = opaqueObject(1);
    Document document(textWith(text("words"), attributes));
    const QTextCharFormat format = document.begin().begin().fragment().charFormat();
    QVERIFY(format.isAnchor() && format.fontUnderline());
    QCOMPARE(format.foreground().color(), QGuiApplication::palette().color(QPalette::Link));
    QVERIFY(document.attributes() == attributes);
    QTextCharFormat plain;
    plain.setFontUnderline(false);
    document.merge(0, 5, plain);
    QCOMPARE(document.attributes().underline, std::optional<qint64>(0));
    Document again(textOf(document));
    QVERIFY(!again.begin().begin().fragment().charFormat().fontUnderline());
  }

  void typingInsideARunTakesOnAllOfIt() {
    QTextEdit edit;
    loadText(textWith(text("words"), everything()), *edit.document());
    edit.moveCursor(QTextCursor::Start);
    edit.moveCursor(QTextCursor::Right);
    QTest::keyClicks(&edit, text("xy"));
    QTest::keyClick(&edit, Qt::Key_Return);
    QVERIFY(textOf(*edit.document()) == textWith(text("wxy\nords"), everything()));
  }

  void typingAfterAPictureIsNoPicture() {
    TextAttributes attributes = everything();
    attributes.attachment = TextAttachment{text("a.png"), pngOf({4, 4}), opaqueObject(9)};
    QTextEdit edit;
    loadText(textWith(text("\xff").replace(QChar(0xff), QChar(0xfffc)), attributes),
             *edit.document());
    edit.moveCursor(QTextCursor::End);
    QTest::keyClicks(&edit, text("xy"));
    const AttributedText changed = textOf(*edit.document());
    QCOMPARE(changed.runs.size(), size_t(2));
    QVERIFY(changed.runs.front().attributes == attributes);
    QVERIFY(changed.runs.back().attributes == everything());
  }

  void typingElsewhereLeavesRandomTextsAsTheyWere_data() {
    QTest::addColumn<int>("firstSeed");
    for (int seed = 0; seed < 500; seed += 50)
      QTest::addRow("from seed %d", seed) << seed;
  }

  void typingElsewhereLeavesRandomTextsAsTheyWere() {
    QFETCH(int, firstSeed);
    constexpr QChar kTyped(0xe000);
    for (int seed = firstSeed; seed < firstSeed + 50; ++seed) {
      const AttributedText random = RandomText(quint32(seed)).text();
      if (random.isEmpty())
        continue;
      Document document(random);
      const AttributedText original = textOf(document);
      QTextCursor cursor(&document);
      cursor.setPosition(seed % document.characterCount());
      cursor.insertText(QString(kTyped));
      const AttributedText changed = textOf(document);
      QCOMPARE(changed.text.count(kTyped), 1);
      AttributedText without;
      qsizetype start = 0;
      for (const TextRun& run : changed.runs) {
        add(without, changed.text.mid(start, run.length).remove(kTyped), run.attributes);
        start += run.length;
      }
      QVERIFY2(without == original, qPrintable(text("seed %1").arg(seed)));
    }
  }

  void undoBringsRandomTextsBack() {
    for (quint32 seed = 0; seed < 100; ++seed) {
      Document document(RandomText(seed).text());
      const AttributedText original = textOf(document);
      QTextCursor cursor = select(document, 0, document.characterCount() - 1);
      cursor.mergeCharFormat(bold());
      cursor.mergeBlockFormat(centred());
      insertText(cursor, RandomText(seed + 1000).text());
      cursor.insertText(text("more"));
      const AttributedText changed = textOf(document);
      while (document.isUndoAvailable())
        document.undo();
      QVERIFY2(textOf(document) == original, qPrintable(text("seed %1").arg(seed)));
      while (document.isRedoAvailable())
        document.redo();
      QVERIFY2(textOf(document) == changed, qPrintable(text("seed %1").arg(seed)));
    }
  }

  void aSelectionIsThatPartOfTheText() {
    AttributedText original = textWith(text("one\r"), everything());
    add(original, text("two"), withStyle(20, 2));
    Document document(original);
    AttributedText expected = textWith(text("e\r"), everything());
    add(expected, text("tw"), withStyle(20, 2));
    QVERIFY(textOf(select(document, 2, 6)) == expected);
    QVERIFY(textOf(select(document, 2, 2)).isEmpty());
  }

  void insertedTextIsOneStepOfUndoAndKeepsItsAttributes() {
    const AttributedText original = textWith(text("before after"), withStyle(30, 7));
    for (quint32 seed = 0; seed < 100; ++seed) {
      Document source(RandomText(seed).text());
      const AttributedText copied = textOf(source);
      Document document(original);
      QTextCursor cursor = select(document, 6, 7);
      insertText(cursor, copied);
      const AttributedText changed = textOf(document);
      QCOMPARE(changed.text, text("before") + copied.text + text("after"));
      document.undo();
      QVERIFY(textOf(document) == original);
    }
  }

  void copiedPicturesTravelWithTheirContents() {
    const TextAttachment picture{text("a.png"), pngOf({40, 30}, Qt::red), opaqueObject(9)};
    TextAttributes attributes;
    attributes.attachment = picture;
    Document source(textWith(QString(QChar(0xfffc)), attributes));
    Document target(textWith(text("ab")));
    QTextCursor cursor = select(target, 1, 1);
    insertText(cursor, textOf(select(source, 0, 1)));
    const QTextCharFormat format = select(target, 1, 2).charFormat();
    QVERIFY(attachmentOf(format) == picture);
    const QTextImageFormat image = format.toImageFormat();
    QCOMPARE(QSizeF(image.width(), image.height()), QSizeF(40, 30));
    const QVariant resource = target.resource(QTextDocument::ImageResource, QUrl(image.name()));
    QCOMPARE(resource.value<QImage>().pixelColor(20, 15), QColor(Qt::red));
  }

  void aFileThatIsNoPictureShowsAnIcon() {
    const TextAttachment file{text("report.pdf"), "%PDF-1.7", {}};
    Document document(AttributedText{});
    QTextCursor cursor(&document);
    cursor.insertText(QString(QChar(0xfffc)), attachmentFormat(file, document));
    const QTextImageFormat image = select(document, 0, 1).charFormat().toImageFormat();
    QVERIFY(!document.resource(QTextDocument::ImageResource, QUrl(image.name()))
                 .value<QImage>()
                 .isNull());
    QVERIFY(document.attributes().attachment == file);
  }

  void aPictureThatSomebodyElseInsertedIsWrittenAsPNG() {
    Document document(AttributedText{});
    QImage image(5, 4, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QTextCursor(&document).insertImage(image);
    const auto attachment = document.attributes().attachment;
    QVERIFY(attachment.has_value());
    QCOMPARE(QImage::fromData(attachment->contents).pixelColor(1, 1), QColor(Qt::blue));
  }

  void anAttachmentCharacterWithoutAnAttachmentIsText() {
    const AttributedText original = textWith(text("a") + QChar(0xfffc) + text("b"), everything());
    Document document(original);
    QVERIFY(!attachmentOf(select(document, 1, 2).charFormat()));
    QVERIFY(textOf(document) == original);
  }
};

QTEST_MAIN(TextEditingTest)
#include "text_editing_test.moc"
