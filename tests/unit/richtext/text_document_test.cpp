// Rich text in a document and back: nothing that was not edited may change.
#include "richtext/paragraph_formats.h"
#include "richtext/text_document.h"
#include "support/random_text.h"

#include <QGuiApplication>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

using namespace tockwise;

namespace {

/// text with equal neighbours made one, as documents give it back.
AttributedText joined(const AttributedText& text) {
  AttributedText made;
  qsizetype start = 0;
  for (const TextRun& run : text.runs) {
    add(made, text.text.mid(start, run.length), run.attributes);
    start += run.length;
  }
  return made;
}

AttributedText throughDocument(const AttributedText& text) {
  QTextDocument document;
  loadText(text, document);
  return textOf(document);
}

} // namespace

class TextDocumentTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void randomTextsComeBackUnchanged_data();
  void randomTextsComeBackUnchanged();
  void hundredCyclesDoNotDrift();
  void unshowableCharactersAreShownAsReplacements();
  void everyLineEndComesBackAsItWas_data();
  void everyLineEndComesBackAsItWas();
  void anEmptyTextMakesAnEmptyDocument();
  void loadingStartsTheUndoHistoryAfresh();
};

void TextDocumentTest::randomTextsComeBackUnchanged_data() {
  QTest::addColumn<int>("firstSeed");
  for (int seed = 0; seed < 500; seed += 50)
    QTest::addRow("from seed %d", seed) << seed;
}

void TextDocumentTest::randomTextsComeBackUnchanged() {
  QFETCH(int, firstSeed);
  for (int seed = firstSeed; seed < firstSeed + 50; ++seed) {
    const AttributedText text = RandomText(quint32(seed)).text();
    const AttributedText back = throughDocument(text);
    QCOMPARE(back.text, text.text);
    QVERIFY2(back == joined(text), qPrintable(QStringLiteral("seed %1").arg(seed)));
  }
}

void TextDocumentTest::hundredCyclesDoNotDrift() {
  QTextDocument document;
  AttributedText text =
      textWith(QStringLiteral("one\ntwo"), withFont(QStringLiteral("Georgia"), 11.3));
  loadText(text, document);
  QTextCursor cursor(&document);
  QTextBlockFormat format;
  format.setLeftMargin(37.7);
  format.setTextIndent(-11.1);
  format.setTopMargin(3.33);
  format.setTabPositions({QTextOption::Tab(55.5, QTextOption::RightTab)});
  cursor.mergeBlockFormat(format);
  const AttributedText first = textOf(document);
  QVERIFY(first != text);
  text = first;
  for (int i = 0; i < 100; ++i)
    text = throughDocument(text);
  QVERIFY(text == first);
}

void TextDocumentTest::unshowableCharactersAreShownAsReplacements() {
  const QString odd =
      QStringLiteral("a") + QChar(0xd800) + QChar(0) + QChar(0xdc00) + QChar(0xfdd0) + u'b';
  QTextDocument document;
  loadText(textWith(odd), document);
  QCOMPARE(document.toPlainText(), QStringLiteral("a\ufffd\ufffd\ufffd\ufffdb"));
  QCOMPARE(document.blockCount(), 1);
  QTextCursor cursor(&document);
  cursor.setPosition(3);
  cursor.insertText(QStringLiteral("typed"));
  QString expected = odd;
  QCOMPARE(textOf(document).text, expected.insert(3, QStringLiteral("typed")));
}

void TextDocumentTest::everyLineEndComesBackAsItWas_data() {
  QTest::addColumn<QString>("lineEnd");
  QTest::addColumn<int>("blocks");
  QTest::addRow("line feed") << QStringLiteral("\n") << 3;
  QTest::addRow("carriage return") << QStringLiteral("\r") << 3;
  QTest::addRow("both") << QStringLiteral("\r\n") << 3;
  QTest::addRow("paragraph separator") << QString(QChar(0x2029)) << 3;
  QTest::addRow("line separator") << QString(QChar(0x2028)) << 1;
}

void TextDocumentTest::everyLineEndComesBackAsItWas() {
  QFETCH(QString, lineEnd);
  QFETCH(int, blocks);
  QTextDocument document;
  const QString text = QStringLiteral("one") + lineEnd + QStringLiteral("two") + lineEnd;
  loadText(textWith(text), document);
  QCOMPARE(document.blockCount(), blocks);
  QCOMPARE(textOf(document).text, text);
}

void TextDocumentTest::anEmptyTextMakesAnEmptyDocument() {
  QTextDocument document;
  document.setPlainText(QStringLiteral("before"));
  loadText({}, document);
  QVERIFY(document.isEmpty());
  QVERIFY(textOf(document).isEmpty());
  QVERIFY(textOf(document).runs.empty());
}

void TextDocumentTest::loadingStartsTheUndoHistoryAfresh() {
  QTextEdit edit;
  edit.setPlainText(QStringLiteral("before"));
  edit.textCursor().insertText(QStringLiteral("more"));
  QVERIFY(edit.document()->isUndoAvailable());
  loadText(textWith(QStringLiteral("after")), *edit.document());
  QVERIFY(!edit.document()->isUndoAvailable());
  QVERIFY(edit.document()->isUndoRedoEnabled());
  QVERIFY(!edit.document()->isModified());
  edit.textCursor().insertText(QStringLiteral("more"));
  edit.undo();
  QCOMPARE(textOf(*edit.document()).text, QStringLiteral("after"));
}

QTEST_MAIN(TextDocumentTest)
#include "text_document_test.moc"
