#include "app/hot_key_actions.h"
#include "support/fakes.h"

#include <QSignalSpy>
#include <QTest>

using namespace tockwise;

namespace {

const QString kKey = QStringLiteral("useGlobalHotKeys");

struct Fixture {
  FakeHotKeys keys;
  MemorySettings settings{{{kKey, Value(false)}}};
  HotKeyActions actions{keys, settings};
  QSignalSpy chosen{&actions, &HotKeyActions::operationChosen};

  Fixture() { actions.start(); }
  void set(bool on) {
    settings.setValue(kKey, Value(on));
    actions.follow();
  }
  QStringList operations() const {
    QStringList names;
    for (const auto& arguments : chosen)
      names += arguments[0].toString();
    return names;
  }
};

} // namespace

class HotKeyActionsTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void nothingIsRegisteredByDefault();
  void nothingIsRegisteredBeforeTheStart();
  void keysAreRegisteredAndGivenBackAsTheSettingSays();
  void followingAgainRegistersNothingAgain();
  void takenKeysAreTriedAgain();
  void keysThatAreNotAvailableAreAskedForOnce();
  void eachNumberDoesItsOperation();
  void otherNumbersDoNothing();
  void aKeyThatWasOnItsWayDoesNothingOnceTheyAreOff();
};

void HotKeyActionsTest::nothingIsRegisteredByDefault() {
  Fixture it;
  it.actions.follow();
  QVERIFY(!it.keys.registered);
  it.keys.press(1);
  QVERIFY(it.operations().isEmpty());
}

void HotKeyActionsTest::nothingIsRegisteredBeforeTheStart() {
  FakeHotKeys keys;
  const MemorySettings settings{{{kKey, Value(true)}}};
  HotKeyActions actions(keys, settings);
  actions.follow();
  QVERIFY(!keys.registered);
  actions.start();
  QVERIFY(keys.registered);
}

void HotKeyActionsTest::keysAreRegisteredAndGivenBackAsTheSettingSays() {
  Fixture it;
  it.set(true);
  QVERIFY(it.keys.registered);
  it.set(false);
  QVERIFY(!it.keys.registered);
  it.set(true);
  QVERIFY(it.keys.registered);
  QCOMPARE(it.keys.registrations, 2);
}

void HotKeyActionsTest::followingAgainRegistersNothingAgain() {
  Fixture it;
  QSignalSpy changes(&it.keys, &HotKeys::stateChanged);
  it.set(true);
  it.actions.follow();
  it.actions.follow();
  QCOMPARE(changes.count(), 1); // the fake tells of every call
}

void HotKeyActionsTest::takenKeysAreTriedAgain() {
  Fixture it;
  it.keys.whenRegistered = HotKeys::State::Taken;
  QSignalSpy changes(&it.keys, &HotKeys::stateChanged);
  it.set(true);
  it.actions.follow();
  QCOMPARE(changes.count(), 2);
  it.keys.whenRegistered = HotKeys::State::Registered;
  it.actions.follow();
  QCOMPARE(changes.count(), 2);
}

void HotKeyActionsTest::keysThatAreNotAvailableAreAskedForOnce() {
  Fixture it;
  it.keys.available = false;
  QSignalSpy changes(&it.keys, &HotKeys::stateChanged);
  it.set(true);
  it.actions.follow();
  it.actions.follow();
  QCOMPARE(changes.count(), 1);
}

void HotKeyActionsTest::eachNumberDoesItsOperation() {
  Fixture it;
  it.set(true);
  for (const HotKey key : kHotKeys)
    it.keys.press(int(key));
  QCOMPARE(it.operations(),
           QStringList({QStringLiteral("newReminder"), QStringLiteral("showAllCurrentAlerts"),
                        QStringLiteral("hideAllCurrentAlerts"),
                        QStringLiteral("printAllCurrentAlerts")}));
}

void HotKeyActionsTest::otherNumbersDoNothing() {
  Fixture it;
  it.set(true);
  for (const int number : {0, 5, -1, INT_MAX, INT_MIN})
    it.keys.press(number);
  QVERIFY(it.operations().isEmpty());
}

void HotKeyActionsTest::aKeyThatWasOnItsWayDoesNothingOnceTheyAreOff() {
  Fixture it;
  it.set(true);
  it.set(false);
  it.keys.press(1);
  QVERIFY(it.operations().isEmpty());
}

QTEST_GUILESS_MAIN(HotKeyActionsTest)
#include "hot_key_actions_test.moc"
