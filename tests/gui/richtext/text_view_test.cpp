#include "gui/richtext/view_fixture.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>

using namespace tockwise;

class TextViewTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void whatIsTypedIsTheText() {
    ShownView shown;
    shown.type(QStringLiteral("Tea"));
    shown.key(Qt::Key_Return);
    shown.type(QStringLiteral("at five"));
    QCOMPARE(shown.plain(), QStringLiteral("Tea\nat five"));
  }

  void aTextThatIsShownIsReadBackAsItWas() {
    AttributedText text = plainText(QStringLiteral("one "));
    TextAttributes red;
    red.color = TextColor{0xffff0000, false, {}};
    text.append(QStringLiteral("two\nthree"), red);
    ShownView shown;
    shown.view.setText(text);
    QCOMPARE(shown.view.text(), text);
    QVERIFY(!shown.view.document()->isUndoAvailable());
  }

  void plainTextReplacesEverything() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org")));
    shown.view.setReminderText(QStringLiteral("a\r\nb\rc"));
    QCOMPARE(shown.plain(), QStringLiteral("a\nb\nc"));
    QVERIFY(!shown.view.text().runs.at(0).attributes.link);
  }

  void tabSaysThatTheKeyboardLeaves() {
    ShownView shown;
    QSignalSpy left(&shown.view, &QSTextView::tabLeft);
    shown.key(Qt::Key_Tab);
    QCOMPARE(left.count(), 1);
    QCOMPARE(shown.plain(), QString());
    QVERIFY(shown.view.hasFocus());
  }

  void tabGoesOnWhereNobodyListens() {
    ShownView shown;
    QLineEdit next;
    shown.layout()->addWidget(&next);
    next.show();
    shown.key(Qt::Key_Tab);
    QVERIFY(next.hasFocus());
  }

  void shiftTabGoesBack() {
    ShownView shown;
    QLineEdit before;
    shown.layout()->addWidget(&before);
    before.show();
    QWidget::setTabOrder(&before, &shown.view);
    QSignalSpy left(&shown.view, &QSTextView::tabLeft);
    shown.key(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(before.hasFocus());
    QCOMPARE(left.count(), 0);
  }

  void controlTabWritesATab() {
    ShownView shown;
    QSignalSpy left(&shown.view, &QSTextView::tabLeft);
    shown.type(QStringLiteral("a"));
    shown.key(Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(shown.plain(), QStringLiteral("a\t"));
    QCOMPARE(left.count(), 0);
  }

  void aWordIsUndoneAndRedoneAtOnce() {
    ShownView shown;
    shown.type(QStringLiteral("word"));
    shown.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(shown.plain(), QString());
    shown.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(shown.plain(), QStringLiteral("word"));
  }

  void returnOverASelectionIsUndoneWithItsFormats() {
    AttributedText text = plainText(QStringLiteral("a\n"));
    TextAttributes red;
    red.color = TextColor{0xffff0000, false, {}};
    text.append(QStringLiteral("red"), red);
    text.append(QStringLiteral(" plain"), {});
    ShownView shown;
    shown.view.setText(text);
    shown.select(1, 11);
    shown.key(Qt::Key_Return);
    QCOMPARE(shown.plain(), QStringLiteral("a\n"));
    shown.view.undo();
    QCOMPARE(shown.view.text(), text);
  }

  void plainTextIsPastedWithOneStepOfUndo() {
    ShownView shown;
    shown.type(QStringLiteral("abc"));
    shown.select(1, 2);
    auto* data = new QMimeData;
    data->setText(QStringLiteral("1\r\n2"));
    QApplication::clipboard()->setMimeData(data);
    shown.key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(shown.plain(), QStringLiteral("a1\n2c"));
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("abc"));
  }

  void copiedTextIsPastedWithItsAttributes() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org/a")));
    shown.view.selectAll();
    shown.key(Qt::Key_C, Qt::ControlModifier);
    ShownView other;
    other.key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(other.view.text(), shown.view.text());
    other.view.undo();
    QCOMPARE(other.plain(), QString());
  }

  void controlClickFollowsALink_data() {
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isFollowed");
    QTest::newRow("https") << "https://example.org/a?b=c" << true;
    QTest::newRow("http") << "HTTP://example.org" << true;
    QTest::newRow("mail") << "mailto:someone@example.org" << true;
    QTest::newRow("file") << "file:///etc/passwd" << false;
    QTest::newRow("script") << "javascript:alert(1)" << false;
    QTest::newRow("relative") << "page.html" << false;
    QTest::newRow("no host") << "http:///tmp" << false;
    QTest::newRow("other") << "ssh://example.org" << false;
  }
  void controlClickFollowsALink() {
    QFETCH(QString, address);
    QFETCH(bool, isFollowed);
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("a link to click"), address));
    QSignalSpy chosen(&shown.view, &QSTextView::linkChosen);
    const QPoint place = shown.view.cursorRect().center() + QPoint(30, 0);
    QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(chosen.count(), 0);
    QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, Qt::ControlModifier, place);
    QCOMPARE(chosen.count(), isFollowed ? 1 : 0);
    if (isFollowed)
      QCOMPARE(chosen[0][0].toUrl(), QUrl(address));
  }

  void textAfterALinkIsNotPartOfIt() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org")));
    shown.moveTo(4);
    shown.type(QStringLiteral(" on"));
    const AttributedText text = shown.view.text();
    QCOMPARE(text.text, QStringLiteral("link on"));
    QCOMPARE(text.runs.size(), size_t(2));
    QVERIFY(!text.runs[1].attributes.link);
    QVERIFY(!text.runs[1].attributes.underline);
    QVERIFY(!text.runs[1].attributes.color);
  }

  void textAfterALinkIsNotPartOfItWhenNothingMovedBetween() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org")));
    shown.moveTo(4);
    QTest::keyClick(&shown.view, Qt::Key_End);
    shown.type(QStringLiteral(" on"));
    QCOMPARE(shown.view.text().runs.at(0).length, 4);
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org")));
    shown.moveTo(4);
    QTest::keyClick(&shown.view, Qt::Key_End);
    QInputMethodEvent composed;
    composed.setCommitString(QStringLiteral("\u00e9"));
    QApplication::sendEvent(&shown.view, &composed);
    QCOMPARE(shown.view.text().runs.at(0).length, 4);
  }

  void textWithinALinkIsPartOfIt() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org")));
    shown.moveTo(2);
    shown.type(QStringLiteral("x"));
    QCOMPARE(shown.view.text().runs.size(), size_t(1));
  }

  void theMenuOpensTheLinkAndSetsTheDirection() {
    ShownView shown;
    shown.view.setText(linkText(QStringLiteral("link"), QStringLiteral("https://example.org")));
    QSignalSpy chosen(&shown.view, &QSTextView::linkChosen);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 10}, {10, 10});
    QApplication::sendEvent(shown.view.viewport(), &event);
    QTRY_VERIFY(QApplication::activePopupWidget());
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu);
    auto* open = menu->findChild<QAction*>(QStringLiteral("openLinkAction"));
    QVERIFY(open);
    open->trigger();
    QCOMPARE(chosen.count(), 1);
    auto* directions = menu->findChild<QMenu*>(QStringLiteral("writingDirectionMenu"));
    directions->actions().at(2)->trigger();
    QCOMPARE(shown.view.document()->firstBlock().blockFormat().layoutDirection(), Qt::RightToLeft);
    menu->close();
  }

  void aParagraphTakesItsDirectionFromItsText() {
    ShownView shown;
    shown.view.setReminderText(QStringLiteral("שלום\nhello"));
    QCOMPARE(shown.view.document()->firstBlock().textDirection(), Qt::RightToLeft);
    QCOMPARE(shown.view.document()->lastBlock().textDirection(), Qt::LeftToRight);
  }

  void inputMethodsCompose() {
    ShownView shown;
    QInputMethodEvent preedit(QStringLiteral("ni"), {});
    QApplication::sendEvent(&shown.view, &preedit);
    QCOMPARE(shown.plain(), QString());
    QInputMethodEvent commit;
    commit.setCommitString(QStringLiteral("你"));
    QApplication::sendEvent(&shown.view, &commit);
    QCOMPARE(shown.plain(), QStringLiteral("你"));
  }

  void aLineBreakIsALineEndForCallers() {
    ShownView shown;
    shown.type(QStringLiteral("a"));
    shown.key(Qt::Key_Return, Qt::ShiftModifier);
    shown.type(QStringLiteral("b"));
    QCOMPARE(shown.view.toPlainText(), QStringLiteral("a\nb"));
  }
};

QTEST_MAIN(TextViewTest)
#include "text_view_test.moc"
