#include "gui/richtext/view_fixture.h"
#include "richtext/ruler_editor.h"
#include "richtext/text_ruler.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>

#include <cmath>

using namespace tockwise;

namespace {

constexpr double kCentimetre = 96 / 2.54;

struct RulerAndView : ShownView {
  explicit RulerAndView(const QString& text = QStringLiteral("one\ntwo\nthree")) : ShownView(600) {
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, &ruler);
    ruler.setLocale(QLocale(QLocale::German, QLocale::Germany));
    view.setReminderText(text);
    ruler.setView(&view);
    ruler.show();
    QApplication::processEvents();
  }
  /// The edge of the text in the ruler.
  double edge() const { return view.document()->documentMargin() + 1; }
  double right() const {
    return edge() + view.document()->textWidth() - 2 * view.document()->documentMargin();
  }
  QPoint at(double x, int y) const { return {int(std::lround(edge() + x)), y}; }
  void drag(QPoint from, QPoint to) {
    QTest::mousePress(&ruler, Qt::LeftButton, {}, from);
    const QPoint middle = (from + to) / 2;
    QTest::mouseMove(&ruler, middle);
    QTest::mouseMove(&ruler, to);
    QTest::mouseRelease(&ruler, Qt::LeftButton, {}, to);
  }
  QTextBlockFormat format(int block = 0) const {
    return view.document()->findBlockByNumber(block).blockFormat();
  }
  QList<QTextOption::Tab> tabs(int block = 0) const { return format(block).tabPositions(); }
  void rulerKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&ruler, key, modifiers);
  }

  TextRuler ruler;
};

bool isAbout(double one, double other) {
  return std::abs(one - other) < 0.01;
}

} // namespace

class TextRulerTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aClickMakesATabStopOnTheGrid() {
    RulerAndView shown;
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, shown.at(2 * kCentimetre + 1, 13));
    QCOMPARE(shown.tabs().size(), 1);
    QVERIFY(isAbout(shown.tabs()[0].position, 2 * kCentimetre));
    QCOMPARE(shown.tabs()[0].type, QTextOption::LeftTab);
    QVERIFY(shown.tabs(1).isEmpty());
    QVERIFY(shown.view.hasFocus());
    shown.view.undo();
    QVERIFY(shown.tabs().isEmpty());
  }

  void aTabStopStandsWhereItsTextDoes() {
    RulerAndView shown(QStringLiteral("\tx"));
    shown.drag(shown.at(0, 3), shown.at(kCentimetre, 3)); // the first line
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, shown.at(3 * kCentimetre, 13));
    shown.moveTo(1);
    QVERIFY(std::abs(shown.view.cursorRect().left() + 1 - shown.at(3 * kCentimetre, 0).x()) <= 2);
  }

  void aTabStopIsDraggedInOneStepOfUndo() {
    RulerAndView shown;
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, shown.at(2 * kCentimetre, 13));
    shown.drag(shown.at(2 * kCentimetre, 16), shown.at(5 * kCentimetre, 16));
    QCOMPARE(shown.tabs().size(), 1);
    QVERIFY(isAbout(shown.tabs()[0].position, 5 * kCentimetre));
    shown.view.undo();
    QVERIFY(isAbout(shown.tabs()[0].position, 2 * kCentimetre));
    shown.view.redo();
    QVERIFY(isAbout(shown.tabs()[0].position, 5 * kCentimetre));
  }

  void aTabStopThatPassesAnotherLeavesItAlone() {
    RulerAndView shown;
    for (const double place : {2.0, 4.0})
      QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, shown.at(place * kCentimetre, 13));
    QTest::mousePress(&shown.ruler, Qt::LeftButton, {}, shown.at(2 * kCentimetre, 16));
    for (const double place : {3.0, 4.0, 5.0})
      QTest::mouseMove(&shown.ruler, shown.at(place * kCentimetre, 16));
    QTest::mouseRelease(&shown.ruler, Qt::LeftButton, {}, shown.at(5 * kCentimetre, 16));
    QCOMPARE(shown.tabs().size(), 2);
    QVERIFY(isAbout(shown.tabs()[0].position, 4 * kCentimetre));
    QVERIFY(isAbout(shown.tabs()[1].position, 5 * kCentimetre));
  }

  void draggedOffATabStopIsRemoved() {
    RulerAndView shown;
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, shown.at(2 * kCentimetre, 13));
    shown.drag(shown.at(2 * kCentimetre, 16), shown.at(2 * kCentimetre, 80));
    QVERIFY(shown.tabs().isEmpty());
    shown.view.undo();
    QCOMPARE(shown.tabs().size(), 1);
  }

  void indentsAreDragged() {
    RulerAndView shown;
    shown.drag(shown.at(0, 3), shown.at(2 * kCentimetre, 3));
    QVERIFY(isAbout(shown.format().textIndent(), 2 * kCentimetre));
    QCOMPARE(shown.format().leftMargin(), 0.0);
    shown.drag(shown.at(0, 22), shown.at(kCentimetre, 22));
    QVERIFY(isAbout(shown.format().leftMargin(), kCentimetre));
    QVERIFY(isAbout(shown.format().textIndent(), kCentimetre)); // the first line stays
    const QPoint end(int(shown.right()), 22);
    shown.drag(end, end - QPoint(int(3 * kCentimetre), 0));
    QVERIFY(isAbout(shown.format().rightMargin(), 3 * kCentimetre));
    const auto style = shown.view.text().runs[0].attributes.paragraph;
    QVERIFY(style);
    QVERIFY(std::abs(style->firstLineHeadIndent - 2 * 72 / 2.54) < 0.01);
    QVERIFY(std::abs(style->headIndent - 72 / 2.54) < 0.01);
    QVERIFY(std::abs(style->tailIndent + 3 * 72 / 2.54) < 0.01);
    shown.view.undo();
    QCOMPARE(shown.format().rightMargin(), 0.0);
  }

  void indentsStayWithinTheText() {
    RulerAndView shown;
    shown.drag(shown.at(0, 22), shown.at(3000, 22));
    QVERIFY(shown.format().leftMargin() < shown.view.viewport()->width());
    shown.drag(shown.at(shown.format().leftMargin(), 22), shown.at(-400, 22));
    QCOMPARE(shown.format().leftMargin(), 0.0);
  }

  void everyParagraphOfTheSelectionIsChanged() {
    RulerAndView shown;
    shown.select(1, 5);
    shown.drag(shown.at(0, 22), shown.at(kCentimetre, 22));
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, shown.at(4 * kCentimetre, 13));
    for (const int block : {0, 1}) {
      QVERIFY(isAbout(shown.format(block).leftMargin(), kCentimetre));
      QCOMPARE(shown.tabs(block).size(), 1);
    }
    QCOMPARE(shown.format(2).leftMargin(), 0.0);
    QVERIFY(shown.tabs(2).isEmpty());
  }

  void aDoubleClickTurnsTheKind() {
    RulerAndView shown;
    const QPoint place = shown.at(2 * kCentimetre, 16);
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, place);
    for (const auto type : {QTextOption::CenterTab, QTextOption::RightTab, QTextOption::LeftTab}) {
      QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, place);
      QTest::mouseDClick(&shown.ruler, Qt::LeftButton, {}, place);
      QCOMPARE(shown.tabs().size(), 1);
      QCOMPARE(shown.tabs()[0].type, type);
    }
  }

  void aDoubleClickOnAFreePlaceMakesOneLeftTabStop() {
    RulerAndView shown;
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, shown.at(2 * kCentimetre, 16));
    QTest::mouseDClick(&shown.ruler, Qt::LeftButton, {}, shown.at(2 * kCentimetre, 16));
    QCOMPARE(shown.tabs().size(), 1);
    QCOMPARE(shown.tabs()[0].type, QTextOption::LeftTab);
  }

  void theMenuChangesAndRemoves() {
    RulerAndView shown;
    const QPoint place = shown.at(2 * kCentimetre, 16);
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, place);
    const auto choose = [&](const char* name) {
      QContextMenuEvent event(QContextMenuEvent::Mouse, place, shown.ruler.mapToGlobal(place));
      QApplication::sendEvent(&shown.ruler, &event);
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      QVERIFY(menu);
      menu->findChild<QAction*>(QString::fromLatin1(name))->trigger();
      menu->close();
    };
    choose("rightTab");
    QCOMPARE(shown.tabs().at(0).type, QTextOption::RightTab);
    choose("removeTab");
    QVERIFY(shown.tabs().isEmpty());
  }

  void theKeyboardDoesAllOfIt() {
    RulerAndView shown;
    shown.ruler.setFocus(Qt::TabFocusReason);
    QVERIFY(shown.ruler.hasFocus());
    QCOMPARE(shown.ruler.accessibleDescription(), QStringLiteral("First line: 0 cm"));
    shown.rulerKey(Qt::Key_Right);
    QVERIFY(isAbout(shown.format().textIndent(), kCentimetre / 10));
    shown.rulerKey(Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(isAbout(shown.format().textIndent(), kCentimetre / 10 + 1));
    shown.rulerKey(Qt::Key_Left);
    shown.rulerKey(Qt::Key_Left);
    QCOMPARE(shown.format().textIndent(), 0.0);
    shown.rulerKey(Qt::Key_Down);
    QCOMPARE(shown.ruler.accessibleDescription(), QStringLiteral("Indent: 0 cm"));
    shown.rulerKey(Qt::Key_Insert);
    QVERIFY(isAbout(shown.tabs().at(0).position, kCentimetre));
    QCOMPARE(shown.ruler.accessibleDescription(), QStringLiteral("Left tab stop: 1 cm"));
    shown.rulerKey(Qt::Key_Right);
    QVERIFY(isAbout(shown.tabs().at(0).position, 1.1 * kCentimetre));
    QCOMPARE(shown.ruler.accessibleDescription(), QStringLiteral("Left tab stop: 1,1 cm"));
    shown.rulerKey(Qt::Key_Return);
    QCOMPARE(shown.tabs().at(0).type, QTextOption::CenterTab);
    shown.rulerKey(Qt::Key_Delete);
    QVERIFY(shown.tabs().isEmpty());
    shown.rulerKey(Qt::Key_Up);
    QCOMPARE(shown.ruler.accessibleDescription(),
             QStringLiteral("Indent at the end of lines: 0 cm"));
    shown.rulerKey(Qt::Key_Left);
    QVERIFY(isAbout(shown.format().rightMargin(), kCentimetre / 10));
    shown.rulerKey(Qt::Key_Escape);
    QVERIFY(shown.view.hasFocus());
  }

  void rightToLeftParagraphsAreMirrored() {
    RulerAndView shown(QStringLiteral("שלום עולם"));
    const auto fromRight = [&](double length, int y) {
      return QPoint(int(std::lround(shown.right() - length)), y);
    };
    QTest::mouseClick(&shown.ruler, Qt::LeftButton, {}, fromRight(3 * kCentimetre, 13));
    QCOMPARE(shown.tabs().size(), 1);
    QVERIFY(isAbout(shown.tabs()[0].position, 3 * kCentimetre));
    QCOMPARE(shown.tabs()[0].type, QTextOption::RightTab); // where the text begins
    shown.drag(fromRight(0, 3), fromRight(kCentimetre, 3));
    QVERIFY(isAbout(shown.format().textIndent(), kCentimetre));
    shown.drag(fromRight(0, 22), fromRight(2 * kCentimetre, 22));
    QVERIFY(isAbout(shown.format().rightMargin(), 2 * kCentimetre));
    QCOMPARE(shown.format().leftMargin(), 0.0);
  }

  void theRulerFollowsTheCursor() {
    RulerAndView shown;
    QTextBlockFormat format;
    format.setLeftMargin(2 * kCentimetre);
    QTextCursor(shown.view.document()->findBlockByNumber(1)).mergeBlockFormat(format);
    shown.moveTo(5);
    shown.drag(shown.at(2 * kCentimetre, 22), shown.at(3 * kCentimetre, 22));
    QVERIFY(isAbout(shown.format(1).leftMargin(), 3 * kCentimetre));
    QCOMPARE(shown.format(0).leftMargin(), 0.0);
  }

  void theUnitIsTheLocales() {
    const RulerScale metric = scaleFor(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(metric.text(kCentimetre * 1.5, QLocale(QLocale::German)), QStringLiteral("1,5 cm"));
    const RulerScale inches = scaleFor(QLocale(QLocale::English, QLocale::UnitedStates));
    QCOMPARE(inches.text(120, QLocale(QLocale::English)), QStringLiteral("1.25 in"));
    QCOMPARE(inches.snapped(97), 96.0);
    QCOMPARE(scaleFor(QLocale(QLocale::English, QLocale::UnitedKingdom)).suffix,
             QStringLiteral("cm"));
  }

  void aRulerWithoutAViewDoesNothing() {
    TextRuler ruler;
    ruler.resize(300, 26);
    ruler.show();
    QTest::mouseClick(&ruler, Qt::LeftButton, {}, {50, 13});
    QTest::keyClick(&ruler, Qt::Key_Insert);
    {
      QSTextView view;
      ruler.setView(&view);
    }
    QTest::mouseClick(&ruler, Qt::LeftButton, {}, {50, 13});
    QTest::keyClick(&ruler, Qt::Key_Right);
    ruler.grab();
  }
};

QTEST_MAIN(TextRulerTest)
#include "text_ruler_test.moc"
