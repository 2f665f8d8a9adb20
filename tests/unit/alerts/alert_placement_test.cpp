#include "alerts/alert_placement.h"

#include <QTest>

using namespace tockwise;

namespace {

constexpr QRect kScreen(0, 30, 1280, 770);

bool seesStripOf(const QRect& below, const QRect& above) {
  return above.left() - below.left() >= 30 || above.top() - below.top() >= 30 ||
         below.right() - above.right() >= 30 || below.bottom() - above.bottom() >= 30;
}

} // namespace

class AlertPlacementTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void theFirstAlertIsCentred() {
    const QRect window(placeAlert({400, 200}, kScreen, {}), QSize(400, 200));
    QVERIFY((window.center() - kScreen.center()).manhattanLength() <= 2);
  }

  void alertsOfOneSizeDoNotHideOneAnother() {
    QList<QRect> open;
    for (int i = 0; i < 8; ++i)
      open += QRect(placeAlert({420, 220}, kScreen, open), QSize(420, 220));
    for (const QRect& a : open) {
      QVERIFY(kScreen.contains(a));
      for (const QRect& b : open)
        QVERIFY(&a == &b || seesStripOf(a, b));
    }
  }

  void aLargeAlertLeavesASmallOneSeen() {
    const QRect small(placeAlert({400, 180}, kScreen, {}), QSize(400, 180));
    const QRect large(placeAlert({640, 560}, kScreen, {small}), QSize(640, 560));
    QVERIFY(seesStripOf(small, large));
    QVERIFY(seesStripOf(large, small));
    QVERIFY(kScreen.contains(large));
  }

  void theSecondOfTwoTakesThePlaceOfAClosedOne() {
    const QRect first(placeAlert({400, 200}, kScreen, {}), QSize(400, 200));
    const QRect second(placeAlert({400, 200}, kScreen, {first}), QSize(400, 200));
    QCOMPARE(placeAlert({400, 200}, kScreen, {second}), first.topLeft());
  }

  void anOpenQuestionIsLeftClear() {
    const QRect question(440, 330, 400, 160);
    const QRect window(placeAlert({420, 220}, kScreen, {}, {question}), QSize(420, 220));
    QVERIFY(!window.intersects(question));
    QVERIFY(kScreen.contains(window));
  }

  void aQuestionThatFillsTheScreenLeavesTheAlertSeen() {
    const QRect question(40, 60, 1200, 700);
    const QRect window(placeAlert({420, 220}, kScreen, {}, {question}), QSize(420, 220));
    QVERIFY(seesStripOf(question, window));
    QVERIFY(kScreen.contains(window));
  }

  void aWindowLargerThanTheScreenStartsInItsCorner() {
    QCOMPARE(placeAlert({2000, 1500}, kScreen, {}), kScreen.topLeft());
  }

  void aScreenFullOfAlertsStillGivesAPlaceInside() {
    QList<QRect> open;
    for (int i = 0; i < 120; ++i) {
      const QRect window(placeAlert({700, 500}, kScreen, open), QSize(700, 500));
      QVERIFY(kScreen.contains(window));
      open += window;
    }
  }

  void aScreenLeftOfTheFirstOneIsKeptTo() {
    const QRect left(-1920, 0, 1920, 1080);
    QVERIFY(left.contains(QRect(placeAlert({400, 200}, left, {}), QSize(400, 200))));
  }
};

QTEST_GUILESS_MAIN(AlertPlacementTest)
#include "alert_placement_test.moc"
