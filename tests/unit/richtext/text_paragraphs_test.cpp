// What edits change of paragraphs: styles, indents, tab stops.
#include "edited_document.h"
#include "richtext/paragraph_formats.h"

#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

using namespace tockwise;

class TextParagraphsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aChangedParagraphIsOneStyleAndOthersStay() {
    AttributedText original = textWith(text("one "), withStyle(10, 1));
    add(original, text("mixed\n"), withStyle(20, 2));
    add(original, text("two\n"), withStyle(30, 3));
    Document document(original);
    QCOMPARE(document.begin().blockFormat().leftMargin(), 10 * 96.0 / 72);
    document.mergeBlock(1, centred());
    ParagraphStyle style;
    style.headIndent = 10;
    style.alignment = TextAlignment::Center;
    AttributedText expected = textWith(text("one mixed\n"), withParagraph(style));
    add(expected, text("two\n"), withStyle(30, 3));
    QVERIFY(textOf(document) == expected);
  }

  void pointsArePixelsOfNinetySixToTheInch() {
    ParagraphStyle style;
    style.alignment = TextAlignment::Right;
    style.firstLineHeadIndent = 36;
    style.headIndent = 18;
    style.tailIndent = -9;
    style.paragraphSpacing = 6;
    style.paragraphSpacingBefore = 3;
    style.lineHeightMultiple = 1.5;
    style.writingDirection = 2;
    style.tabStops = {{72, qint64(TextAlignment::Center), {}}};
    const QTextBlockFormat format =
        Document(textWith(text("words"), withParagraph(style))).begin().blockFormat();
    QCOMPARE(format.alignment(), Qt::AlignRight | Qt::AlignAbsolute);
    QCOMPARE(format.leftMargin(), 24.0);
    QCOMPARE(format.textIndent(), 24.0);
    QCOMPARE(format.rightMargin(), 12.0);
    QCOMPARE(format.bottomMargin(), 8.0);
    QCOMPARE(format.topMargin(), 4.0);
    QCOMPARE(format.lineHeight(), 150.0);
    QCOMPARE(format.lineHeightType(), int(QTextBlockFormat::ProportionalHeight));
    QCOMPARE(format.layoutDirection(), Qt::RightToLeft);
    QCOMPARE(format.tabPositions(), {QTextOption::Tab(48, QTextOption::CenterTab)});
  }

  void whatTheRulerSetsIsWrittenInPoints() {
    Document document(textWith(text("words")));
    QTextBlockFormat format;
    format.setLeftMargin(24);
    format.setTextIndent(-12);
    format.setRightMargin(8);
    format.setTopMargin(4);
    format.setBottomMargin(2);
    format.setLineHeight(20, QTextBlockFormat::MinimumHeight);
    format.setLayoutDirection(Qt::LeftToRight);
    setListMarkers(format, {text("{disc}")});
    document.mergeBlock(0, format);
    ParagraphStyle style;
    style.alignment = TextAlignment::Natural;
    style.headIndent = 18;
    style.firstLineHeadIndent = 9;
    style.tailIndent = -6;
    style.paragraphSpacingBefore = 3;
    style.paragraphSpacing = 1.5;
    style.minLineHeight = 15;
    style.writingDirection = 1;
    style.lists = {text("{disc}")};
    QVERIFY(document.attributes().paragraph == style);
  }

  void tabStopsThatStayKeepWhatTheyCameWith() {
    ParagraphStyle style;
    style.tabStops = {{72, 0, opaqueObject(1)}, {144, 3, opaqueObject(2)}};
    Document document(textWith(text("words"), withParagraph(style)));
    QTextBlockFormat format;
    QList<QTextOption::Tab> tabs = document.begin().blockFormat().tabPositions();
    tabs.removeFirst();
    tabs += QTextOption::Tab(240, QTextOption::RightTab);
    format.setTabPositions(tabs);
    document.mergeBlock(0, format);
    const std::vector<TextTab> expected{{144, 3, opaqueObject(2)}, {180, 1, {}}};
    QVERIFY(document.attributes().paragraph->tabStops == expected);
  }

  void tabStopsAreMeasuredFromTheMargin() {
    ParagraphStyle style;
    style.firstLineHeadIndent = 9;
    style.headIndent = 36;
    style.tabStops = {{18, 0, opaqueObject(1)}, {60, 0, opaqueObject(2)}};
    Document document(textWith(text("\ta\tb"), withParagraph(style)));
    document.setDocumentMargin(0);
    document.setTextWidth(600);
    QVERIFY(document.size().isValid());
    const QTextLine line = document.begin().layout()->lineAt(0);
    QCOMPARE(line.cursorToX(1), 18 * kPixelsPerPoint);
    QCOMPARE(line.cursorToX(3), 60 * kPixelsPerPoint);
    // The ruler moves the first line and leaves the tab stops where they are.
    const QTextBlockFormat before = document.begin().blockFormat();
    QTextBlockFormat format = before;
    format.setTextIndent(0);
    const double moved = tabOrigin(format, 40) - tabOrigin(before, 40);
    QCOMPARE(moved, 27 * kPixelsPerPoint);
    QList<QTextOption::Tab> tabs = before.tabPositions();
    for (QTextOption::Tab& tab : tabs)
      tab.position -= moved;
    format.setTabPositions(tabs);
    document.mergeBlock(0, format);
    QCOMPARE(document.attributes().paragraph->firstLineHeadIndent, 36.0);
    QVERIFY(document.attributes().paragraph->tabStops == style.tabStops);
  }

  void aParagraphTakesInWhatIsJoinedToIt() {
    AttributedText original = textWith(text("ab\n"), withStyle(10, 1));
    add(original, text("cd"), withStyle(20, 2));
    Document document(original);
    select(document, 2, 3).removeSelectedText();
    QCOMPARE(textOf(document).text, text("abcd"));
    // What is left of the second paragraph shows the first one's style, and so it is written.
    select(document, 0, 2).removeSelectedText();
    QVERIFY(textOf(document) == textWith(text("cd"), withStyle(10, 1)));
  }

  void insertedParagraphsBringTheirStyleAndTheRestKeepsItsOwn() {
    Document document(textWith(text("headtail"), withStyle(30, 7)));
    AttributedText inserted = textWith(text("one\ntwo\n"), withStyle(10, 1));
    QTextCursor cursor = select(document, 4, 4);
    insertText(cursor, inserted);
    QCOMPARE(textOf(document).text, text("headone\ntwo\ntail"));
    const auto indent = [&](int block) {
      return document.findBlockByNumber(block).blockFormat().leftMargin() / kPixelsPerPoint;
    };
    QCOMPARE(indent(0), 30.0);
    QCOMPARE(indent(1), 10.0);
    QCOMPARE(indent(2), 30.0);
    QVERIFY(textOf(document).runs.back().attributes == withStyle(30, 7));
  }

  void textWithoutAStyleTakesOnThatOfTheParagraph() {
    Document document(AttributedText{});
    document.mergeBlock(0, centred());
    QTextCursor cursor(&document);
    insertText(cursor, textWith(text("one\ntwo")));
    QCOMPARE(document.lastBlock().blockFormat().alignment(), Qt::AlignHCenter);
    QCOMPARE(document.attributes().paragraph->alignment, TextAlignment::Center);
    QCOMPARE(textOf(document).runs.size(), size_t(1));
  }
};

QTEST_MAIN(TextParagraphsTest)
#include "text_paragraphs_test.moc"
