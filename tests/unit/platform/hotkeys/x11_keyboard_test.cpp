#include "platform/hotkeys/key_repeat.h"
#include "platform/hotkeys/x11_keyboard.h"

#include <QTest>

#include <xkbcommon/xkbcommon.h>

using namespace tockwise;

namespace {

// Key codes of a PC's keyboard.
constexpr uint8_t kAmericanM = 58;
constexpr uint8_t kFrenchM = 47;
constexpr uint8_t kS = 39;
constexpr uint8_t kH = 43;
constexpr uint8_t kP = 33;
constexpr uint8_t kLeftSuper = 133;
constexpr uint8_t kNumLock = 77;
constexpr uint8_t kScrollLock = 78;

constexpr uint16_t kLock = 1 << 1;
constexpr uint16_t kControl = 1 << 2;
constexpr uint16_t kMod2 = 1 << 4;
constexpr uint16_t kMod3 = 1 << 5;
constexpr uint16_t kMod4 = 1 << 6;
constexpr uint16_t kMod5 = 1 << 7;

/// A keymap of layouts by their names.
class Keymap {
 public:
  explicit Keymap(const char* layouts) : m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    xkb_rule_names names{};
    names.rules = "evdev";
    names.model = "pc105";
    names.layout = layouts;
    m_keymap = xkb_keymap_new_from_names(m_context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
  }
  ~Keymap() {
    xkb_keymap_unref(m_keymap);
    xkb_context_unref(m_context);
  }
  Keymap(const Keymap&) = delete;
  Keymap& operator=(const Keymap&) = delete;

  KeyGrabs grabs(uint32_t layout, const ModifierCodes& modifiers = usual()) const {
    return keyGrabs(m_keymap, layout, modifiers);
  }

  static ModifierCodes usual() {
    ModifierCodes codes;
    codes[4] = {kNumLock};
    codes[6] = {kLeftSuper};
    return codes;
  }

 private:
  xkb_context* m_context;
  xkb_keymap* m_keymap;
};

using Codes = std::vector<uint8_t>;

} // namespace

class X11KeyboardTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void lettersAreWhereTheActiveLayoutHasThem_data();
  void lettersAreWhereTheActiveLayoutHasThem();
  void superIsTheModifierOfItsKey();
  void superIsTheFourthModifierWhereNoKeyIsIt();
  void everyCombinationOfTheLocksIsGrabbed();
  void locksThatAreOnNoModifierAreLeftOut();
  void aHeldKeyIsPressedOnce();
  void aHeldKeyWithReleasesBetweenIsPressedOnce();
  void aKeyIsPressedAnewAfterItsRelease();
  void anotherKeyIsPressedAnew();
  void aLostReleaseIsForgotten();
  void theServersTimeWraps();
};

void X11KeyboardTest::lettersAreWhereTheActiveLayoutHasThem_data() {
  QTest::addColumn<QByteArray>("layouts");
  QTest::addColumn<unsigned>("active");
  QTest::addColumn<int>("m");
  QTest::newRow("American") << QByteArray("us") << 0U << int(kAmericanM);
  QTest::newRow("French") << QByteArray("fr") << 0U << int(kFrenchM);
  QTest::newRow("American beside French") << QByteArray("us,fr") << 0U << int(kAmericanM);
  QTest::newRow("French beside American") << QByteArray("us,fr") << 1U << int(kFrenchM);
  QTest::newRow("Russian beside American") << QByteArray("us,ru") << 1U << int(kAmericanM);
  QTest::newRow("Russian beside French") << QByteArray("ru,fr") << 0U << int(kFrenchM);
  QTest::newRow("Russian alone") << QByteArray("ru") << 0U << int(kAmericanM);
  QTest::newRow("Greek alone") << QByteArray("gr") << 0U << int(kAmericanM);
  QTest::newRow("French as the third") << QByteArray("us,ru,fr,de") << 2U << int(kFrenchM);
  QTest::newRow("German as the fourth") << QByteArray("us,ru,fr,de") << 3U << int(kAmericanM);
}

void X11KeyboardTest::lettersAreWhereTheActiveLayoutHasThem() {
  QFETCH(const QByteArray, layouts);
  QFETCH(const unsigned, active);
  QFETCH(const int, m);
  const KeyGrabs grabs = Keymap(layouts.constData()).grabs(active);
  QCOMPARE(grabs.codes[0], Codes{uint8_t(m)});
  QCOMPARE(grabs.codes[1], Codes{kS});
  QCOMPARE(grabs.codes[2], Codes{kH});
  QCOMPARE(grabs.codes[3], Codes{kP});
}

void X11KeyboardTest::superIsTheModifierOfItsKey() {
  ModifierCodes modifiers;
  modifiers[5] = {kLeftSuper};
  QCOMPARE(Keymap("us").grabs(0, modifiers).modifiers, uint16_t(kControl | kMod3));
  modifiers[7] = {kLeftSuper}; // under two: one of them is enough
  QCOMPARE(Keymap("us").grabs(0, modifiers).modifiers, uint16_t(kControl | kMod3));
}

void X11KeyboardTest::superIsTheFourthModifierWhereNoKeyIsIt() {
  QCOMPARE(Keymap("us").grabs(0, {}).modifiers, uint16_t(kControl | kMod4));
}

void X11KeyboardTest::everyCombinationOfTheLocksIsGrabbed() {
  const std::vector<uint16_t> two{0, kLock, kMod2, kLock | kMod2};
  QCOMPARE(Keymap("us").grabs(0).locks, two);
  ModifierCodes modifiers = Keymap::usual();
  modifiers[7] = {kScrollLock};
  const std::vector<uint16_t> three = Keymap("us").grabs(0, modifiers).locks;
  QCOMPARE(three.size(), size_t(8));
  QCOMPARE(three.back(), uint16_t(kLock | kMod2 | kMod5));
}

void X11KeyboardTest::locksThatAreOnNoModifierAreLeftOut() {
  const std::vector<uint16_t> capsOnly{0, kLock};
  QCOMPARE(Keymap("us").grabs(0, {}).locks, capsOnly);
}

void X11KeyboardTest::aHeldKeyIsPressedOnce() {
  KeyRepeat repeat;
  QVERIFY(repeat.isNewPress(kAmericanM, 1000));
  QVERIFY(!repeat.isNewPress(kAmericanM, 1660));
  QVERIFY(!repeat.isNewPress(kAmericanM, 1700));
}

void X11KeyboardTest::aHeldKeyWithReleasesBetweenIsPressedOnce() {
  KeyRepeat repeat;
  QVERIFY(repeat.isNewPress(kAmericanM, 1000));
  for (uint32_t time = 1660; time < 9000; time += 40) {
    repeat.release(kAmericanM, time);
    QVERIFY(!repeat.isNewPress(kAmericanM, time));
  }
}

void X11KeyboardTest::aKeyIsPressedAnewAfterItsRelease() {
  KeyRepeat repeat;
  QVERIFY(repeat.isNewPress(kAmericanM, 1000));
  repeat.release(kAmericanM, 1080);
  QVERIFY(repeat.isNewPress(kAmericanM, 1081));
}

void X11KeyboardTest::anotherKeyIsPressedAnew() {
  KeyRepeat repeat;
  QVERIFY(repeat.isNewPress(kAmericanM, 1000));
  QVERIFY(repeat.isNewPress(kS, 1100));
  repeat.release(kAmericanM, 1200);
  QVERIFY(!repeat.isNewPress(kS, 1300));
}

void X11KeyboardTest::aLostReleaseIsForgotten() {
  KeyRepeat repeat;
  QVERIFY(repeat.isNewPress(kAmericanM, 1000));
  QVERIFY(repeat.isNewPress(kAmericanM, 7000));
}

void X11KeyboardTest::theServersTimeWraps() {
  KeyRepeat repeat;
  QVERIFY(repeat.isNewPress(kAmericanM, UINT32_MAX - 100));
  QVERIFY(!repeat.isNewPress(kAmericanM, 500));
}

QTEST_GUILESS_MAIN(X11KeyboardTest)
#include "x11_keyboard_test.moc"
