#include "prefs/ui/hot_key_text_field.h"
#include "support/fakes.h"

#include <QTest>

using namespace tockwise;

namespace {

const QString kReady = QStringLiteral("Ready");

} // namespace

class HotKeyTextFieldTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void showsReadyWhenLoaded();
  void takesTheKeyboard();
  void keysDoNotEditIt();
  void followsTheState();
  void showsReadyAfterTheEndOfTheKeys();
  void tellsOfAPressedHotKeyUntilItLosesTheKeyboard();
  void otherKeysAreNotTakenForHotKeys();
};

void HotKeyTextFieldTest::showsReadyWhenLoaded() {
  const HotKeyTextField field;
  QCOMPARE(field.text(), kReady);
  QVERIFY(field.toolTip().contains(QStringLiteral("Control+Super+M")));
}

void HotKeyTextFieldTest::takesTheKeyboard() {
  QWidget window;
  QLineEdit other(&window);
  HotKeyTextField field(&window);
  window.show();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  other.setFocus();
  QTest::keyClick(&other, Qt::Key_Tab);
  QVERIFY(field.hasFocus());
  QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
  QCOMPARE(field.selectedText(), kReady);
  QTest::keyClick(&field, Qt::Key_Tab);
  QVERIFY(other.hasFocus());
}

void HotKeyTextFieldTest::keysDoNotEditIt() {
  HotKeyTextField field;
  QTest::keyClicks(&field, QStringLiteral("mshp and more"));
  for (const auto key : {Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Return})
    QTest::keyClick(&field, key);
  for (const auto key : {Qt::Key_X, Qt::Key_V, Qt::Key_Z})
    QTest::keyClick(&field, key, Qt::ControlModifier);
  QCOMPARE(field.text(), kReady);
}

void HotKeyTextFieldTest::followsTheState() {
  FakeHotKeys keys;
  HotKeyTextField field;
  field.follow(keys);
  QCOMPARE(field.text(), kReady);
  keys.registerHotKeys();
  QCOMPARE(field.text(), QStringLiteral("Control+Super+M, S, H and P work"));
  keys.unregisterHotKeys();
  QCOMPARE(field.text(), kReady);
  keys.whenRegistered = HotKeys::State::Taken;
  keys.registerHotKeys();
  QCOMPARE(field.text(),
           QStringLiteral("Control+Super+M, S, H and P are taken by another program"));
  FakeHotKeys none;
  none.available = false;
  field.follow(none);
  QVERIFY(field.text().startsWith(QStringLiteral("Not available here")));
  QVERIFY(field.toolTip().contains(QStringLiteral("tockwise alerts hide")));
  keys.unregisterHotKeys(); // not followed any more
  QVERIFY(field.text().startsWith(QStringLiteral("Not available here")));
}

void HotKeyTextFieldTest::showsReadyAfterTheEndOfTheKeys() {
  HotKeyTextField field;
  {
    FakeHotKeys keys;
    field.follow(keys);
    keys.registerHotKeys();
  }
  QCOMPARE(field.text(), kReady);
  QTest::keyClick(&field, Qt::Key_M, Qt::ControlModifier | Qt::MetaModifier);
  QVERIFY(field.text().contains(QStringLiteral("switched off")));
}

void HotKeyTextFieldTest::tellsOfAPressedHotKeyUntilItLosesTheKeyboard() {
  QWidget window;
  QLineEdit other(&window);
  HotKeyTextField field(&window);
  window.show();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  field.setFocus();
  QTest::keyClick(&field, Qt::Key_S, Qt::ControlModifier | Qt::MetaModifier);
  QCOMPARE(field.text(),
           QStringLiteral("Control+Super+S is switched off: it shows all current alerts"));
  other.setFocus();
  QCOMPARE(field.text(), kReady);
}

void HotKeyTextFieldTest::otherKeysAreNotTakenForHotKeys() {
  HotKeyTextField field;
  QTest::keyClick(&field, Qt::Key_M, Qt::MetaModifier);
  QTest::keyClick(&field, Qt::Key_M, Qt::ControlModifier | Qt::MetaModifier | Qt::ShiftModifier);
  QTest::keyClick(&field, Qt::Key_K, Qt::ControlModifier | Qt::MetaModifier);
  QCOMPARE(field.text(), kReady);
}

QTEST_MAIN(HotKeyTextFieldTest)
#include "hot_key_text_field_test.moc"
