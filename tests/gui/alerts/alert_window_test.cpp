#include "alerts/alert_text_view.h"
#include "alerts/alert_window_controller.h"
#include "dates/calendar.h"
#include "support/log_lines.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QWindow>

using namespace tockwise;

namespace {

constexpr QRect kScreen(0, 0, 800, 800);

AlertRequest alertOf(const QString& text) {
  AlertRequest request;
  request.reminder = text;
  request.RTFData = QByteArrayLiteral("archived");
  request.date = Calendar::current().dateWithYear(2026, 5, 5, 15, 7, 9);
  request.reminderType = QStringLiteral("regular");
  request.reminderUUID = QStringLiteral("8C6D6A60-0000-4000-8000-000000000001");
  return request;
}

AlertRequest rescheduled(AlertRequest request) {
  request.rescheduled = true;
  return request;
}

/// An alert window that is open, active and past the time in which keys are ignored.
class OpenAlert {
 public:
  explicit OpenAlert(const AlertRequest& request, const UnarchiveText& unarchive = {})
      : controller(request, AlertLevel::ModalPanel, unarchive) {
    controller.fit(kScreen);
    controller.present({10, 10});
    controller.activateWindow();
  }
  template <typename T> T* find(const char* name) const {
    return controller.findChild<T*>(QString::fromLatin1(name));
  }
  QPushButton* button(const char* name) const { return find<QPushButton>(name); }
  AlertTextView* text() const { return find<AlertTextView>("reminderView"); }
  bool takesKeys() { return controller.isActiveWindow() && !controller.isGuardingKeys(); }

  AlertWindowController controller;
};

void press(QPushButton* button) {
  QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

class AlertWindowTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void initTestCase() { enableLogLines(); }

  void theTextIsShownAsItIsWritten() {
    OpenAlert alert(alertOf(QStringLiteral("<b>Tea</b> & cake\nat five")));
    QCOMPARE(alert.text()->toPlainText(), QStringLiteral("<b>Tea</b> & cake\nat five"));
  }

  void withoutRichTextThePlainTextIsShownAndTheLogSaysSo() {
    AlertRequest request = alertOf(QStringLiteral("Tea"));
    request.RTFData.clear();
    QTest::ignoreMessage(QtInfoMsg, "No data to unarchive");
    bool asked = false;
    OpenAlert alert(request, [&](const QByteArray&, QTextDocument&) { return asked = true; });
    QCOMPARE(alert.text()->toPlainText(), QStringLiteral("Tea"));
    QVERIFY(!asked);
  }

  void richTextReplacesThePlainText() {
    QByteArray given;
    OpenAlert alert(alertOf(QStringLiteral("Tea")),
                    [&](const QByteArray& data, QTextDocument& document) {
                      given = data;
                      document.setPlainText(QStringLiteral("Tea, bold"));
                      return true;
                    });
    QCOMPARE(given, QByteArrayLiteral("archived"));
    QCOMPARE(alert.text()->toPlainText(), QStringLiteral("Tea, bold"));
  }

  void richTextThatCannotBeReadLeavesThePlainText() {
    QTest::ignoreMessage(QtInfoMsg, "Error: the rich text of the reminder can't be read");
    OpenAlert alert(alertOf(QStringLiteral("Tea")), [](const QByteArray&, QTextDocument& document) {
      document.setPlainText(QStringLiteral("half"));
      return false;
    });
    QCOMPARE(alert.text()->toPlainText(), QStringLiteral("Tea"));
  }

  void theDateHasItsNamesInFull() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QCOMPARE(alert.find<QLabel>("dateField")->text(),
             QStringLiteral("Tuesday, May 05, 2026 03:07 PM"));
  }

  void theBoxesShowWhatWasSentAndCannotBeChanged() {
    AlertRequest request = alertOf(QStringLiteral("Tea"));
    request.sentEmail = true;
    OpenAlert alert(request);
    auto* email = alert.find<QCheckBox>("emailBox");
    auto* sms = alert.find<QCheckBox>("smsBox");
    QVERIFY(email->isChecked() && alert.controller.emailState());
    QVERIFY(!sms->isChecked() && !alert.controller.smsState());
    QTest::mouseClick(email, Qt::LeftButton);
    QTest::keyClick(sms, Qt::Key_Space);
    QVERIFY(email->isChecked());
    QVERIFY(!sms->isChecked());
  }

  void aOneTimeAlertOffersToRemindAgain() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QVERIFY(alert.button("remindAgainButton")->isVisible());
    QVERIFY(!alert.button("deleteButton")->isVisible());
    QVERIFY(!alert.find<QLabel>("resecheduledField")->isVisible());
  }

  void aRescheduledAlertOffersToDeleteAndSaysSo() {
    OpenAlert alert(rescheduled(alertOf(QStringLiteral("Tea"))));
    QVERIFY(!alert.button("remindAgainButton")->isVisible());
    QVERIFY(alert.button("deleteButton")->isVisible());
    QVERIFY(alert.find<QLabel>("resecheduledField")->isVisible());
  }

  void eachButtonTellsItsChoice() {
    OpenAlert once(alertOf(QStringLiteral("Tea")));
    QSignalSpy ok(&once.controller, &AlertWindowController::okChosen);
    QSignalSpy again(&once.controller, &AlertWindowController::remindAgainChosen);
    press(once.button("okButton"));
    QCOMPARE(ok.count(), 1);
    press(once.button("remindAgainButton"));
    QCOMPARE(again.count(), 1);
    OpenAlert repeating(rescheduled(alertOf(QStringLiteral("Tea"))));
    QSignalSpy removal(&repeating.controller, &AlertWindowController::deleteChosen);
    press(repeating.button("deleteButton"));
    QCOMPARE(removal.count(), 1);
  }

  void closingTheWindowIsOK() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QSignalSpy ok(&alert.controller, &AlertWindowController::okChosen);
    alert.controller.windowHandle()->close();
    QCOMPARE(ok.count(), 1);
  }

  void keysThatWereMeantForAnotherProgramDoNothing() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QTRY_VERIFY(alert.controller.isActiveWindow());
    QVERIFY(alert.controller.isGuardingKeys());
    QSignalSpy ok(&alert.controller, &AlertWindowController::okChosen);
    QSignalSpy again(&alert.controller, &AlertWindowController::remindAgainChosen);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape})
      QTest::keyClick(alert.controller.windowHandle(), key);
    QTest::keyClick(alert.controller.windowHandle(), Qt::Key_A, Qt::AltModifier);
    QVERIFY(alert.controller.isGuardingKeys()); // each key makes the wait longer
    QCOMPARE(ok.count() + again.count(), 0);
  }

  void onceTheKeyboardHasRestedKeysAct_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<bool>("isAgain");
    QTest::newRow("Return") << int(Qt::Key_Return) << 0 << false;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << 0 << false;
    QTest::newRow("Space") << int(Qt::Key_Space) << 0 << false;
    QTest::newRow("Escape") << int(Qt::Key_Escape) << 0 << false;
    QTest::newRow("Alt+O") << int(Qt::Key_O) << int(Qt::AltModifier) << false;
    QTest::newRow("Alt+A") << int(Qt::Key_A) << int(Qt::AltModifier) << true;
  }

  void onceTheKeyboardHasRestedKeysAct() {
    QFETCH(int, key);
    QFETCH(int, modifier);
    QFETCH(bool, isAgain);
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QSignalSpy ok(&alert.controller, &AlertWindowController::okChosen);
    QSignalSpy again(&alert.controller, &AlertWindowController::remindAgainChosen);
    QTRY_VERIFY(alert.takesKeys());
    QTest::keyClick(alert.controller.windowHandle(), Qt::Key(key), Qt::KeyboardModifiers(modifier));
    QTRY_COMPARE(isAgain ? again.count() : ok.count(), 1);
    QCOMPARE(isAgain ? ok.count() : again.count(), 0);
  }

  void aKeyHeldDownIsNoAnswer() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QSignalSpy ok(&alert.controller, &AlertWindowController::okChosen);
    QTRY_VERIFY(alert.takesKeys());
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(alert.button("okButton"), &held);
    QCOMPARE(ok.count(), 0);
  }

  void aClickEndsTheWaitForTheKeyboard() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QTRY_VERIFY(alert.controller.isActiveWindow());
    QTest::mouseClick(alert.text()->viewport(), Qt::LeftButton);
    QVERIFY(!alert.controller.isGuardingKeys());
  }

  void tabGoesThroughEveryControl() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    QTRY_VERIFY(alert.takesKeys());
    QStringList order;
    for (int i = 0; i < 6; ++i) {
      order += QApplication::focusWidget()->objectName();
      QTest::keyClick(alert.controller.windowHandle(), Qt::Key_Tab);
    }
    QCOMPARE(order.mid(0, 2),
             (QStringList{QStringLiteral("okButton"), QStringLiteral("remindAgainButton")}));
    for (const char* name : {"reminderView", "emailBox", "smsBox"})
      QVERIFY2(order.contains(QString::fromLatin1(name)), qPrintable(order.join(u' ')));
  }

  void everyControlHasANameForScreenReaders() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    for (const char* name : {"okButton", "remindAgainButton", "deleteButton", "emailBox", "smsBox",
                             "reminderView", "dateField", "resecheduledField", "clockBadge"}) {
      auto* widget = alert.find<QWidget>(name);
      QVERIFY2(widget && !widget->accessibleName().isEmpty(), name);
    }
    QAccessibleInterface* box =
        QAccessible::queryAccessibleInterface(alert.find<QWidget>("smsBox"));
    QCOMPARE(box->role(), QAccessible::CheckBox);
  }

  void aLongTextScrollsAndTheWindowFitsTheScreen() {
    OpenAlert alert(alertOf(QStringLiteral("All work and no play. ").repeated(400)));
    QVERIFY(alert.controller.height() <= kScreen.height());
    QScrollBar* bar = alert.text()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    QTRY_VERIFY(alert.takesKeys());
    QTest::keyClick(alert.controller.windowHandle(), Qt::Key_PageDown);
    QVERIFY(bar->value() > 0);
    QTest::keyClick(alert.controller.windowHandle(), Qt::Key_End);
    QCOMPARE(bar->value(), bar->maximum());
    QTest::keyClick(alert.controller.windowHandle(), Qt::Key_Home);
    QCOMPARE(bar->value(), 0);
  }

  // Laid out as one word it would run into the suite's time limit.
  void anEndlessWordOpensAsOtherTexts() {
    const OpenAlert alert(alertOf(QString(1'000'000, u'x')));
    QVERIFY(alert.controller.isVisible());
    QVERIFY(alert.controller.height() <= kScreen.height());
  }

  void aTextThatFitsDoesNotScroll_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("a word") << QStringLiteral("Tea");
    QTest::newRow("empty") << QString();
    QTest::newRow("a sentence") << QStringLiteral("Call the dentist about Thursday and ask "
                                                  "whether last year's pictures are needed.");
    QTest::newRow("lines") << QStringLiteral("milk\nbread\nbutter\napples\ntea");
    QTest::newRow("no blanks") << QString(300, u'x');
  }

  void aTextThatFitsDoesNotScroll() {
    QFETCH(QString, text);
    OpenAlert alert(alertOf(text));
    QTRY_VERIFY(alert.controller.isVisible());
    QCOMPARE(alert.text()->verticalScrollBar()->maximum(), 0);
    const int used = int(alert.text()->document()->size().height());
    QVERIFY2(alert.text()->height() <= used + 2 * alert.text()->fontMetrics().height(),
             qPrintable(QStringLiteral("%1 for %2").arg(alert.text()->height()).arg(used)));
  }

  void aTextFromRightToLeftStartsAtTheRight() {
    OpenAlert alert(alertOf(QString::fromUtf8("תזכורת: תה")));
    QCOMPARE(alert.text()->document()->firstBlock().textDirection(), Qt::RightToLeft);
  }

  void addressesInThePlainTextAreLinks_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("target");
    const QString plain = QStringLiteral("https://example.org/a?b=1&c=2");
    QTest::newRow("alone") << plain << plain;
    QTest::newRow("end of a sentence") << QStringLiteral("See %1.").arg(plain) << plain;
    QTest::newRow("parentheses") << QStringLiteral("(see https://example.org/x)")
                                 << QStringLiteral("https://example.org/x");
    QTest::newRow("its own parentheses") << QStringLiteral("https://example.org/a_(b)")
                                         << QStringLiteral("https://example.org/a_(b)");
    QTest::newRow("www") << QStringLiteral("www.example.org")
                         << QStringLiteral("https://www.example.org");
    QTest::newRow("none") << QStringLiteral("Tea at 5.30, javascript:alert(1)") << QString();
  }

  void addressesInThePlainTextAreLinks() {
    QFETCH(QString, text);
    OpenAlert alert(alertOf(text));
    QString found;
    const QTextBlock block = alert.text()->document()->firstBlock();
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      if (part.fragment().charFormat().isAnchor())
        found = part.fragment().charFormat().anchorHref();
    }
    QTEST(found, "target");
  }

  void aClickedLinkIsPassedOnAndNotOpenedInTheWindow() {
    OpenAlert alert(alertOf(QStringLiteral("https://example.org/a")));
    QSignalSpy links(&alert.controller, &AlertWindowController::linkChosen);
    AlertTextView* view = alert.text();
    QTextCursor cursor(view->document());
    cursor.setPosition(4);
    const QPoint place = view->cursorRect(cursor).center();
    QTest::mouseMove(view->viewport(), place);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
    QTRY_COMPARE(links.count(), 1);
    QCOMPARE(links.front().front().toUrl(), QUrl(QStringLiteral("https://example.org/a")));
    QCOMPARE(view->toPlainText(), QStringLiteral("https://example.org/a"));
  }

  void theWindowFloatsAboveOthersAndAsksForNoKeyboard() {
    AlertWindowController alert(alertOf(QStringLiteral("Tea")), AlertLevel::MainMenu, {});
    QVERIFY(alert.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(alert.testAttribute(Qt::WA_ShowWithoutActivating));
    QCOMPARE(alert.windowModality(), Qt::NonModal);
    QCOMPARE(alert.level(), AlertLevel::MainMenu);
  }

  void theTitleTellsTheReminderInOneLine_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("title");
    QTest::newRow("short") << QStringLiteral("Tea") << QStringLiteral("Tea");
    QTest::newRow("lines") << QStringLiteral("Tea\n and cake") << QStringLiteral("Tea and cake");
    QTest::newRow("long") << QString(41, u'x') << QString(40, u'x') + QStringLiteral("...");
    QTest::newRow("empty") << QString() << QGuiApplication::applicationDisplayName();
    QTest::newRow("turned") << QStringLiteral("Tea \u202e\u2067and\u2069 \u200dcake")
                            << QStringLiteral("Tea and \u200dcake");
  }

  void theTitleTellsTheReminderInOneLine() {
    QFETCH(QString, text);
    const AlertWindowController alert(alertOf(text), AlertLevel::ModalPanel, {});
    QTEST(alert.windowTitle(), "title");
  }

  void hiddenAndBroughtBackItStandsWhereItStood() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    alert.controller.move(77, 88);
    alert.controller.putAway();
    QVERIFY(!alert.controller.isVisible());
    alert.controller.bringBack();
    QVERIFY(alert.controller.isVisible());
    QCOMPARE(alert.controller.pos(), QPoint(77, 88));
  }

  void aChangeOfThemeIsFollowed() {
    OpenAlert alert(alertOf(QStringLiteral("Tea")));
    const QPalette before = QApplication::palette();
    const QImage light = alert.controller.grab().toImage();
    QPalette dark = before;
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
      dark.setColor(role, QColor(40, 40, 44));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
      dark.setColor(role, QColor(240, 240, 240));
    QApplication::setPalette(dark);
    QTRY_VERIFY(alert.controller.grab().toImage().pixelColor(3, 3).lightness() < 100);
    QVERIFY(light.pixelColor(3, 3).lightness() > 150);
    QApplication::setPalette(before);
  }
};

QTEST_MAIN(AlertWindowTest)
#include "alert_window_test.moc"
