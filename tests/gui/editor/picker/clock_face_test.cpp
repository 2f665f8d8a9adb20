#include "editor/clock_face.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <memory>
#include <numbers>

using namespace tockwise;

namespace {

class OpenFace {
 public:
  OpenFace() {
    face.resize(200, 200);
    face.show();
  }
  /// A point of the face: degrees clockwise from 12, distance as part of the radius.
  QPoint at(double degrees, double distance) const {
    const double radians = degrees * std::numbers::pi / 180;
    return QPoint(100 + int(std::lround(100 * distance * std::sin(radians))),
                  100 - int(std::lround(100 * distance * std::cos(radians))));
  }
  void press(QPoint point) { QTest::mousePress(&face, Qt::LeftButton, Qt::NoModifier, point); }
  void move(QPoint point) { QTest::mouseMove(&face, point); }
  void release(QPoint point) { QTest::mouseRelease(&face, Qt::LeftButton, Qt::NoModifier, point); }
  void wheel(int angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWheelEvent event(QPointF(100, 100), face.mapToGlobal(QPointF(100, 100)), QPoint(),
                      QPoint(0, angle), Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&face, &event);
  }
  std::pair<int, int> time() const { return {face.hour(), face.minute()}; }

  ClockFace face;
};

using Time = std::pair<int, int>;

} // namespace

class ClockFaceTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void settingATimeTellsNobody() {
    OpenFace open;
    QSignalSpy picked(&open.face, &ClockFace::timePicked);
    open.face.setTime(13, 5);
    QCOMPARE(open.time(), Time(13, 5));
    QCOMPARE(picked.count(), 0);
  }

  void draggingTheMinuteHandSetsTheMinute() {
    OpenFace open;
    open.face.setTime(10, 0);
    QSignalSpy picked(&open.face, &ClockFace::timePicked);
    open.press(open.at(0, 0.8));
    open.move(open.at(90, 0.8));
    open.move(open.at(138, 0.8));
    open.release(open.at(138, 0.8));
    QCOMPARE(open.time(), Time(10, 23));
    QCOMPARE(picked.last(), (QVariantList{10, 23}));
    open.move(open.at(0, 0.8));
    QCOMPARE(open.time(), Time(10, 23)); // let go
  }

  void theHourFollowsTheMinuteHandPastTwelve() {
    OpenFace open;
    open.face.setTime(10, 50);
    open.press(open.at(300, 0.8));
    open.move(open.at(30, 0.8));
    QCOMPARE(open.time(), Time(11, 5));
    open.move(open.at(330, 0.8));
    QCOMPARE(open.time(), Time(10, 55));
    open.release(open.at(330, 0.8));
    // Within the day.
    open.face.setTime(23, 58);
    open.press(open.at(348, 0.8));
    open.move(open.at(12, 0.8));
    open.release(open.at(12, 0.8));
    QCOMPARE(open.time(), Time(0, 2));
  }

  void draggingTheHourHandKeepsMinuteAndHalfOfTheDay() {
    OpenFace open;
    open.face.setTime(15, 0);
    open.press(open.at(90, 0.3));
    open.move(open.at(150, 0.3));
    QCOMPARE(open.time(), Time(17, 0));
    open.move(open.at(2, 0.3));
    open.release(open.at(2, 0.3));
    QCOMPARE(open.time(), Time(12, 0));
    open.face.setTime(1, 30);
    open.press(open.at(45, 0.3));
    open.move(open.at(314, 0.3));
    open.release(open.at(314, 0.3));
    QCOMPARE(open.time(), Time(10, 30));
  }

  void everyMinuteAndHourCanBeReached() {
    OpenFace open;
    open.face.resize(140, 140);
    for (int minute = 0; minute < 60; ++minute) {
      open.face.setTime(10, (minute + 29) % 60);
      const QPoint rim = open.at(minute * 6, 0.85) * 0.7;
      QTest::mouseClick(&open.face, Qt::LeftButton, Qt::NoModifier, rim);
      QCOMPARE(open.face.minute(), minute);
    }
  }

  void pressesBesideTheFaceDoNothing() {
    OpenFace open;
    open.face.setTime(10, 0);
    QTest::mouseClick(&open.face, Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    QTest::mouseClick(&open.face, Qt::RightButton, Qt::NoModifier, open.at(90, 0.8));
    QCOMPARE(open.time(), Time(10, 0));
  }

  void keysMoveByMinutesAndHours() {
    OpenFace open;
    open.face.setTime(10, 59);
    QTest::keyClick(&open.face, Qt::Key_Up);
    QCOMPARE(open.time(), Time(11, 0));
    QTest::keyClick(&open.face, Qt::Key_Left);
    QCOMPARE(open.time(), Time(10, 59));
    QTest::keyClick(&open.face, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(open.time(), Time(11, 59));
    QTest::keyClick(&open.face, Qt::Key_PageDown);
    QTest::keyClick(&open.face, Qt::Key_Down);
    QCOMPARE(open.time(), Time(10, 58));
    QTest::keyClick(&open.face, Qt::Key_PageUp);
    QCOMPARE(open.time(), Time(11, 58));
  }

  void theWheelMovesByMinutesAndHours() {
    OpenFace open;
    open.face.setTime(0, 0);
    open.wheel(60);
    QCOMPARE(open.time(), Time(0, 0));
    open.wheel(60);
    QCOMPARE(open.time(), Time(0, 1));
    open.wheel(-240);
    QCOMPARE(open.time(), Time(23, 59));
    open.wheel(120, Qt::ShiftModifier);
    QCOMPARE(open.time(), Time(0, 59));
  }

  void aFaceWithoutTimeTakesOneFromTheFirstPick() {
    OpenFace open;
    open.face.clearTime();
    QVERIFY(!open.face.hasTime());
    QTest::mouseClick(&open.face, Qt::LeftButton, Qt::NoModifier, open.at(90, 0.8));
    QCOMPARE(open.time(), Time(12, 15));
  }

  void itSaysItsTime() {
    OpenFace open;
    open.face.setLocale(QLocale(QStringLiteral("de_DE")));
    open.face.setTime(13, 5);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&open.face);
    QCOMPARE(interface->text(QAccessible::Name), QStringLiteral("Clock"));
    QCOMPARE(interface->text(QAccessible::Description), QStringLiteral("13:05"));
  }
};

QTEST_MAIN(ClockFaceTest)
#include "clock_face_test.moc"
