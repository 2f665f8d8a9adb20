#include "gui/richtext/view_fixture.h"
#include "richtext/text_lists.h"

using namespace tockwise;

namespace {

std::optional<ParagraphStyle> styleAt(const AttributedText& text, qsizetype position) {
  for (const TextRun& run : text.runs) {
    if (position < run.length)
      return run.attributes.paragraph;
    position -= run.length;
  }
  return std::nullopt;
}

} // namespace

class TextListsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aListIsTextWithAHangingIndent() {
    ShownView shown;
    shown.type(QStringLiteral("milk"));
    setList(shown.view.textCursor(), ListKind::Bullets);
    const AttributedText text = shown.view.text();
    QCOMPARE(text.text, QStringLiteral("\t•\tmilk"));
    const auto style = styleAt(text, 0);
    QVERIFY(style);
    QCOMPARE(style->firstLineHeadIndent, 0.0);
    QCOMPARE(style->headIndent, 36.0);
    QCOMPARE(style->tabStops->size(), size_t(2));
    QCOMPARE(style->tabStops->at(0).location, 11.0);
    QCOMPARE(style->tabStops->at(1).location, 36.0);
    QCOMPARE(style->lists, std::vector<QString>{QStringLiteral("{disc}")});
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("milk"));
  }

  void aSelectionOfParagraphsIsNumbered() {
    ShownView shown;
    shown.view.setReminderText(QStringLiteral("a\nb\nc"));
    shown.view.selectAll();
    setList(shown.view.textCursor(), ListKind::Numbers);
    QCOMPARE(shown.plain(), QStringLiteral("\t1.\ta\n\t2.\tb\n\t3.\tc"));
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("a\nb\nc"));
  }

  void aListChangesItsKindAndEnds() {
    ShownView shown;
    shown.view.setReminderText(QStringLiteral("a\nb"));
    const auto style = shown.view.document()->firstBlock().blockFormat();
    shown.view.selectAll();
    setList(shown.view.textCursor(), ListKind::Numbers);
    shown.view.selectAll();
    setList(shown.view.textCursor(), ListKind::Bullets);
    QCOMPARE(shown.plain(), QStringLiteral("\t•\ta\n\t•\tb"));
    shown.view.selectAll();
    setList(shown.view.textCursor(), ListKind::None);
    QCOMPARE(shown.plain(), QStringLiteral("a\nb"));
    const auto after = shown.view.document()->firstBlock().blockFormat();
    QCOMPARE(after.leftMargin(), style.leftMargin());
    QCOMPARE(after.textIndent(), style.textIndent());
    QVERIFY(after.tabPositions().isEmpty());
  }

  void returnGoesOnAndAnEmptyItemEnds() {
    ShownView shown;
    shown.type(QStringLiteral("a"));
    setList(shown.view.textCursor(), ListKind::Bullets);
    shown.key(Qt::Key_End);
    shown.key(Qt::Key_Return);
    shown.type(QStringLiteral("b"));
    QCOMPARE(shown.plain(), QStringLiteral("\t•\ta\n\t•\tb"));
    shown.key(Qt::Key_Return);
    shown.key(Qt::Key_Return);
    shown.type(QStringLiteral("c"));
    QCOMPARE(shown.plain(), QStringLiteral("\t•\ta\n\t•\tb\nc"));
    const auto last = shown.view.document()->lastBlock().blockFormat();
    QCOMPARE(last.leftMargin(), 0.0);
    QCOMPARE(last.textIndent(), 0.0);
  }

  void oneUndoTakesAnItemBack() {
    ShownView shown;
    shown.type(QStringLiteral("a"));
    setList(shown.view.textCursor(), ListKind::Numbers);
    shown.key(Qt::Key_End);
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.plain(), QStringLiteral("\t1.\ta\n\t2.\t"));
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("\t1.\ta"));
  }

  void anItemInTheMiddleMovesTheNumbersOn() {
    ShownView shown;
    shown.view.setReminderText(QStringLiteral("a\nb\nc"));
    shown.view.selectAll();
    setList(shown.view.textCursor(), ListKind::Numbers);
    shown.moveTo(5); // after "a"
    shown.key(Qt::Key_Return);
    shown.type(QStringLiteral("x"));
    QCOMPARE(shown.plain(), QStringLiteral("\t1.\ta\n\t2.\tx\n\t3.\tb\n\t4.\tc"));
  }

  void returnInTheMiddleOfAnItemDividesIt() {
    ShownView shown;
    shown.type(QStringLiteral("ab"));
    setList(shown.view.textCursor(), ListKind::Bullets);
    shown.moveTo(4);
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.plain(), QStringLiteral("\t•\ta\n\t•\tb"));
    QCOMPARE(shown.view.textCursor().positionInBlock(), 3);
  }

  void backspaceAtTheBeginningTakesTheMarkerAway() {
    ShownView shown;
    shown.view.setReminderText(QStringLiteral("a\nb\nc"));
    shown.view.selectAll();
    setList(shown.view.textCursor(), ListKind::Numbers);
    shown.moveTo(shown.view.document()->findBlockByNumber(1).position() + 4);
    shown.key(Qt::Key_Backspace);
    QCOMPARE(shown.plain(), QStringLiteral("\t1.\ta\nb\n\t1.\tc"));
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("\t1.\ta\n\t2.\tb\n\t3.\tc"));
  }

  void aSelectionUpToAParagraphLeavesItAlone() {
    ShownView shown;
    shown.view.setReminderText(QStringLiteral("a\nb\nc"));
    shown.select(0, 4);
    setList(shown.view.textCursor(), ListKind::Bullets);
    QCOMPARE(shown.plain(), QStringLiteral("\t•\ta\n\t•\tb\nc"));
  }

  void theNextItemIsNotPartOfALink() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org")));
    setList(shown.view.textCursor(), ListKind::Bullets);
    shown.key(Qt::Key_End);
    shown.key(Qt::Key_Return);
    shown.type(QStringLiteral("b"));
    const AttributedText text = shown.view.text();
    QCOMPARE(text.text, QStringLiteral("\t•\tlink\n\t•\tb"));
    QCOMPARE(text.runs.front().attributes.link, std::nullopt);
    QCOMPARE(text.runs.back().attributes.link, std::nullopt);
  }

  void returnOutsideAListIsALineEnd() {
    ShownView shown;
    shown.type(QStringLiteral("1. a"));
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.plain(), QStringLiteral("1. a\n"));
  }

  void theKindIsToldByTheText_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("kind");
    QTest::newRow("bullet") << QStringLiteral("\t•\tx") << int(ListKind::Bullets);
    QTest::newRow("dash") << QStringLiteral("\t-\tx") << int(ListKind::Bullets);
    QTest::newRow("number") << QStringLiteral("\t12)\tx") << int(ListKind::Numbers);
    QTest::newRow("no tab") << QStringLiteral("•\tx") << int(ListKind::None);
    QTest::newRow("word") << QStringLiteral("\tx\tx") << int(ListKind::None);
    QTest::newRow("empty") << QString() << int(ListKind::None);
  }
  void theKindIsToldByTheText() {
    QFETCH(QString, text);
    QFETCH(int, kind);
    ShownView shown;
    shown.view.setReminderText(text);
    QCOMPARE(int(listKindAt(shown.view.textCursor())), kind);
  }
};

QTEST_MAIN(TextListsTest)
#include "text_lists_test.moc"
