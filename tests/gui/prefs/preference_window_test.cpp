// The preferences window: opening and closing, saving and what it tells.
#include "preference_test.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QWindow>

using namespace tockwise;

class PreferenceWindowTest : public PreferenceTest {
  Q_OBJECT

  void tick(const char* box, bool checked) {
    auto* button = find<QAbstractButton>(box);
    if (button->isChecked() != checked)
      button->click();
  }
  QStringList titlesAsked() {
    QStringList titles;
    for (const Question& question : m_preferences->prompter.asked)
      titles += question.title;
    return titles;
  }

 private Q_SLOTS:
  void itOpensInTheMiddleOfTheScreenWithItsVersion() {
    open();
    const QPoint middle = window().screen()->availableGeometry().center();
    QVERIFY((window().geometry().center() - middle).manhattanLength() < 4);
    QCOMPARE(find<QLabel>("versionField")->text(), text("Tockwise " TOCKWISE_VERSION));
    QCOMPARE(window().pane(), Pane::General);
    QVERIFY(!window().windowFlags().testFlag(Qt::WindowStaysOnTopHint)); // alerts do
  }

  void theMenuBringsItToTheFrontWithWhatWasTyped() {
    open();
    const QPoint place = window().pos() + QPoint(20, 30);
    window().move(place);
    write("emailField", "me@");
    set("email", text("other@example.org"));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window().prefs();
    QVERIFY(QTest::qWaitForWindowActive(&window()));
    QCOMPARE(find<QLineEdit>("emailField")->text(), text("me@"));
    QCOMPARE(window().pos(), place);
    window().showMinimized();
    window().prefs();
    QVERIFY(!window().isMinimized());
    QCOMPARE(find<QLineEdit>("emailField")->text(), text("me@"));
  }

  void itIsFilledAnewWhenItWasClosed() {
    open();
    click("okButton");
    QVERIFY(!window().isVisible());
    set("email", text("other@example.org"));
    window().prefs();
    QCOMPARE(find<QLineEdit>("emailField")->text(), text("other@example.org"));
  }

  void applySavesAndStays() {
    open();
    write("emailField", "me@example.org");
    QVERIFY(window().isWindowModified());
    QSignalSpy written(&window(), &PreferenceWindowController::settingsWritten);
    click("applyButton");
    QVERIFY(window().isVisible());
    QVERIFY(!window().isWindowModified());
    QCOMPARE(stored("email"), text("me@example.org"));
    QVERIFY(!written.isEmpty());
  }

  void itSavesWhenItCloses_data() {
    QTest::addColumn<QByteArray>("way");
    for (const char* way : {"OK", "Return", "Escape", "title bar"})
      QTest::newRow(way) << QByteArray(way);
  }
  void itSavesWhenItCloses() {
    QFETCH(QByteArray, way);
    open();
    window().showPane(Pane::Messages);
    write("emailField", "me@example.org");
    find<QLineEdit>("emailField")->setFocus();
    if (way == "OK")
      click("okButton");
    else if (way == "title bar")
      window().windowHandle()->close();
    else
      QTest::keyClick(window().windowHandle(), way == "Return" ? Qt::Key_Return : Qt::Key_Escape);
    QTRY_VERIFY(!window().isVisible());
    QCOMPARE(stored("email"), text("me@example.org"));
    QVERIFY(m_preferences->prompter.asked.empty());
  }

  void returnInTheListOfPanesOrAmongTheQuickTimesClosesNothing() {
    open();
    find<QListWidget>("paneList")->setFocus();
    QTest::keyClick(window().windowHandle(), Qt::Key_Return);
    QVERIFY(window().isVisible());
    QCOMPARE(window().focusWidget()->objectName(), text("loginItemBox"));
    window().showPane(Pane::QuickTimes);
    auto* minutes = find<QLineEdit>("minutesField");
    minutes->setFocus();
    minutes->setText(text("7"));
    QTest::keyClick(window().windowHandle(), Qt::Key_Return);
    QVERIFY(window().isVisible());
    QCOMPARE(m_preferences->settings.stringList(text("quickRemindMenuArray")).constLast(),
             text("7 Minutes "));
  }

  void okStaysOpenWhenThereIsSomethingToTell() {
    open();
    tick("sendEmailBox", true);
    click("okButton");
    QCOMPARE(titlesAsked(), QStringList{text("No Email Address")});
    QCOMPARE(m_preferences->prompter.asked[0].message,
             text("You need to enter an email address you would like to send email reminders to."));
    QCOMPARE(m_preferences->prompter.asked[0].buttons, QStringList{text("OK")});
    QVERIFY(window().isVisible());
    QVERIFY(!isOn("sendEmail")); // switched off, as the box shows
    QVERIFY(!find<QAbstractButton>("sendEmailBox")->isChecked());
    click("okButton");
    QVERIFY(!window().isVisible());
    QCOMPARE(titlesAsked().size(), qsizetype(1));
  }

  void theAlertsComeOneAfterTheOtherAndTheQueueLast() {
    open();
    window().showPane(Pane::MailServer);
    tick("sendEmailBox", true);
    tick("sendSMSBox", true);
    tick("useAbsolute", false);
    tick("useCountdown", false);
    std::vector<Pane> panes;
    m_preferences->prompter.meanwhile = [&] { panes.push_back(window().pane()); };
    click("applyButton");
    QCOMPARE(titlesAsked(), (QStringList{text("No Email Address"), text("SMS Settings Incomplete"),
                                         text("Queue Display Options")}));
    QCOMPARE(m_preferences->prompter.asked[2].message,
             text("Please choose at least one queue display option."));
    QVERIFY(panes == (std::vector{Pane::MailServer, Pane::MailServer, Pane::Menu}));
    QCOMPARE(find<QStackedWidget>("tabView")->currentIndex(), 2);
  }

  void withoutAWayToShowTheQueueTheRestIsNotSaved() {
    open();
    tick("useAbsolute", false);
    tick("useCountdown", false);
    tick("datePicker", false);
    tick("noReminderCheckBox", true);
    tick("loginItemBox", true);
    find<QAbstractButton>("clockButton2")->click();
    write("phoneField", "555");
    QSignalSpy icon(&window(), &PreferenceWindowController::changeClockIcon);
    QSignalSpy update(&window(), &PreferenceWindowController::updatePrefs);
    QVERIFY(!window().savePreferences());
    QCOMPARE(window().pane(), Pane::Menu);
    QVERIFY(icon.isEmpty() && update.isEmpty());
    QCOMPARE(stored("sms"), text("555"));
    QVERIFY(isOn("useAbsolute") && isOn("useCountdown") && isOn("datepicker"));
    QVERIFY(!isOn("noReminder") && !isOn("loginItem"));
    QCOMPARE(m_preferences->settings.integer(text("clockoption")), qint64(1));
    QVERIFY(window().isWindowModified());
    QVERIFY(find<QAbstractButton>("clockButton2")->isChecked()); // kept for the next attempt
    window().close();
    QVERIFY(window().isVisible()); // until one is chosen
    tick("useCountdown", true);
    window().close();
    QVERIFY(!window().isVisible());
    QVERIFY(!isOn("useAbsolute") && isOn("useCountdown") && !isOn("datepicker"));
    QCOMPARE(m_preferences->settings.integer(text("clockoption")), qint64(2));
    QVERIFY(isOn("loginItem"));
  }

  void savingAnnouncesTheIconThenTheRest() {
    open();
    find<QAbstractButton>("clockButton4")->click();
    QStringList announced;
    connect(&window(), &PreferenceWindowController::changeClockIcon, this,
            [&](qint64 value) { announced += text("icon %1").arg(value); });
    connect(&window(), &PreferenceWindowController::updatePrefs, this, [&] {
      announced += text("prefs");
      QVERIFY(!isOn("datepicker")); // everything is stored by then
    });
    tick("datePicker", false);
    QVERIFY(window().savePreferences());
    QCOMPARE(announced, (QStringList{text("icon 4"), text("prefs")}));
  }

  void alertsLeaveTheOtherSettingsSaved() {
    open();
    tick("sendSMSBox", true);
    tick("datePicker", false);
    QVERIFY(!window().savePreferences());
    QVERIFY(!isOn("datepicker") && !isOn("sendSMS"));
  }

  void closingTellsAndCloses() {
    open();
    tick("sendEmailBox", true);
    write("emailField", "me@example.org");
    window().close();
    QCOMPARE(titlesAsked(), QStringList{text("Email Server Settings Not Complete")});
    QVERIFY(!window().isVisible());
    QVERIFY(isOn("sendEmail"));
  }

  void whileAnAlertIsShownNothingIsSavedTwice() {
    open();
    tick("sendEmailBox", true);
    m_preferences->prompter.meanwhile = [&] {
      QVERIFY(!window().savePreferences());
      window().savePrefs();
      window().close();
      QVERIFY(window().isVisible());
    };
    window().applyPrefs();
    QCOMPARE(titlesAsked().size(), qsizetype(1));
    QVERIFY(window().isVisible());
  }

  void quittingSavesWhatWasTyped() {
    QVERIFY(window().applicationShouldTerminate()); // never opened
    open();
    tick("sendEmailBox", true);
    QVERIFY(window().applicationShouldTerminate()); // nothing to save, nothing to tell
    QVERIFY(m_preferences->prompter.asked.empty());
    write("emailField", "me@example.org");
    tick("useAbsolute", false);
    tick("useCountdown", false);
    QVERIFY(!window().applicationShouldTerminate());
    QCOMPARE(window().pane(), Pane::Menu);
    tick("useCountdown", true);
    QVERIFY(window().applicationShouldTerminate());
    QCOMPARE(stored("email"), text("me@example.org"));
    QVERIFY(!isOn("useAbsolute"));
  }

  void aClosedWindowDoesNotFollow() {
    open();
    click("okButton");
    set("email", text("other@example.org"));
    window().settingsChanged();
    QCOMPARE(find<QLineEdit>("emailField")->text(), QString());
    window().prefs();
    QCOMPARE(find<QLineEdit>("emailField")->text(), text("other@example.org"));
  }

  void anEmptyPortBecomes587() {
    open();
    write("serverPortField", "");
    window().applyPrefs();
    QCOMPARE(find<QLineEdit>("serverPortField")->text(), text("587"));
    QCOMPARE(m_preferences->settings.integer(text("serverPortAD")), qint64(587));
  }

  void aPortIsANumber() {
    open();
    window().showPane(Pane::MailServer);
    auto* port = find<QLineEdit>("serverPortField");
    port->clear();
    port->setFocus();
    QTest::keyClicks(port, text("a6.5,5-99"));
    QCOMPARE(port->text(), text("6559")); // 65599 is none
  }

  void authentication_data() {
    QTest::addColumn<int>("method");
    QTest::addColumn<QString>("username");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("complete");
    QTest::newRow("none") << 0 << text("me") << text("secret") << false;
    QTest::newRow("no password") << 2 << text("me") << QString() << false;
    QTest::newRow("no user name") << 3 << QString() << text("secret") << false;
    QTest::newRow("both") << 1 << text("me") << text("secret") << true;
  }
  void authentication() {
    QFETCH(int, method);
    QFETCH(QString, username);
    QFETCH(QString, password);
    QFETCH(bool, complete);
    open();
    write("emailAddressField", "me@example.org");
    write("smtpServerNameField", "smtp.example.org");
    find<QComboBox>("authPopup")->setCurrentIndex(method);
    QCOMPARE(find<QLineEdit>("username")->isEnabled(), method > 0);
    QCOMPARE(find<QLineEdit>("password")->isEnabled(), method > 0);
    find<QLineEdit>("username")->setText(username);
    find<QLineEdit>("password")->setText(password);
    QVERIFY(window().savePreferences());
    QCOMPARE(isOn("useADPrefs"), complete);
    QCOMPARE(isOn("useADPrefsNoAuth"), !complete);
    QCOMPARE(stored("passwordAD"), method > 0 ? password : QString());
    QCOMPARE(find<QLabel>("serverState")->text(),
             complete ? text("Saved and complete, with user name and password.")
                      : text("Saved and complete, without user name and password."));
  }

  void anEmptiedFieldOfTheServerKeepsWhatIsStoredAndSaysSo() {
    set("emailAddressAD", text("me@example.org"));
    set("smtpServerNameAD", text("smtp.example.org"));
    set("useADPrefsNoAuth", true);
    open();
    write("emailAddressField", "");
    QCOMPARE(find<QLineEdit>("emailAddressField")->placeholderText(), text("keeps me@example.org"));
    window().applyPrefs();
    QCOMPARE(stored("emailAddressAD"), text("me@example.org"));
    QVERIFY(isOn("useADPrefsNoAuth")); // as it was
    QCOMPARE(find<QLineEdit>("emailAddressField")->text(), QString());
    QVERIFY(!window().isWindowModified());
    click("okButton");
    window().prefs();
    QCOMPARE(find<QLineEdit>("emailAddressField")->text(), text("me@example.org"));
  }

  void thePasswordIsShownAsDotsWithWhereItIsKept() {
    set("passwordAD", text("secret"));
    set("authenticationAD", 2);
    open();
    window().showPane(Pane::MailServer);
    auto* password = find<QLineEdit>("password");
    QCOMPARE(password->echoMode(), QLineEdit::Password);
    QVERIFY(!password->displayText().contains(u's'));
    QVERIFY(!find<QLabel>("passwordHint")->isVisible());
    m_preferences->passwordHint = text("It is kept in the keyring.");
    window().settingsChanged();
    QVERIFY(find<QLabel>("passwordHint")->isVisible());
    QCOMPARE(find<QLabel>("passwordHint")->text(), text("It is kept in the keyring."));
  }
};

QTEST_MAIN(PreferenceWindowTest)
#include "preference_window_test.moc"
