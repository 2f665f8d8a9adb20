// What single panes of the preferences window do beside showing settings.
#include "editor/date_picker.h"
#include "editor/toned_label.h"
#include "preference_test.h"
#include "prefs/ui/check_sign.h"
#include "support/log_lines.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableWidget>

#include <limits>

using namespace tockwise;

class PreferencePanesTest : public PreferenceTest {
  Q_OBJECT

  bool isShown(const char* name) { return find<QWidget>(name)->isVisible(); }
  QString label(const char* name) { return find<QLabel>(name)->text(); }
  void chooseSound(const char* name) {
    auto* popup = find<QComboBox>("reminderSoundPopUp");
    popup->setFocus();
    const int wanted = popup->findText(text(name));
    while (popup->currentIndex() < wanted)
      QTest::keyClick(popup, Qt::Key_Down);
    while (popup->currentIndex() > wanted)
      QTest::keyClick(popup, Qt::Key_Up);
  }

 private Q_SLOTS:
  // The login item.

  void theLoginItemComesAndGoesAtTheClick() {
    open(Pane::General);
    click("loginItemBox");
    QCOMPARE(m_preferences->loginItems.calls, QStringList{text("add")});
    QVERIFY(!m_preferences->settings.boolean(text("loginItem"))); // on saving
    window().applyPrefs();
    QVERIFY(m_preferences->settings.boolean(text("loginItem")));
    click("loginItemBox");
    QCOMPARE(m_preferences->loginItems.calls, (QStringList{text("add"), text("remove")}));
    QVERIFY(!isShown("loginItemNote"));
  }

  void aLoginItemThatCannotBeWrittenIsToldBesideTheBox() {
    open(Pane::General);
    m_preferences->loginItems.failure =
        Error{Error::Kind::Storage, text("the folder is read-only")};
    click("loginItemBox");
    QVERIFY(!find<QAbstractButton>("loginItemBox")->isChecked());
    QVERIFY(isShown("loginItemNote"));
    QCOMPARE(label("loginItemNote"), text("This could not be changed: the folder is read-only."));
    m_preferences->loginItems.failure.reset();
    click("loginItemBox");
    QVERIFY(find<QAbstractButton>("loginItemBox")->isChecked());
    QVERIFY(!isShown("loginItemNote"));
  }

  void theBoxShowsWhatTheDesktopWillDo() {
    set("loginItem", true);
    open(Pane::General);
    QVERIFY(!find<QAbstractButton>("loginItemBox")->isChecked());
    QCOMPARE(label("loginItemNote"),
             text("It was switched on here, and something else has switched it off."));
    click("loginItemBox");
    click("loginItemBox");
    QVERIFY(!isShown("loginItemNote")); // the user did
  }

  void whatTheDesktopWillDoIsSavedAlsoWhenSomethingElseChangedItMeanwhile() {
    open(Pane::General);
    click("loginItemBox");
    m_preferences->loginItems.present = false;
    window().applyPrefs();
    QVERIFY(!m_preferences->settings.boolean(text("loginItem")));
    QVERIFY(!find<QAbstractButton>("loginItemBox")->isChecked());
    QVERIFY(!window().isWindowModified());
  }

  // The hot keys.

  void theStateOfTheHotKeysIsShown_data() {
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("hint");
    using State = HotKeys::State;
    QTest::newRow("registered") << int(State::Registered) << text("works") << false;
    QTest::newRow("pending") << int(State::Pending) << text("waiting for the desktop") << false;
    QTest::newRow("taken") << int(State::Taken)
                           << text("taken by another program; instead bind: tockwise alerts hide")
                           << true;
    QTest::newRow("not available")
        << int(State::NotAvailable)
        << text("not available here; instead bind: tockwise alerts hide") << true;
  }
  void theStateOfTheHotKeysIsShown() {
    QFETCH(int, state);
    QFETCH(QString, shown);
    QFETCH(bool, hint);
    open(Pane::General);
    QCOMPARE(label("hotKeyState3"), text("off"));
    QCOMPARE(label("hotKey3"), text("Ctrl+Super+H"));
    m_preferences->hotKeys.whenRegistered = HotKeys::State(state);
    m_preferences->hotKeys.registerHotKeys(); // the window follows by itself
    QCOMPARE(label("hotKeyState3"), shown);
    QCOMPARE(isShown("hotKeyHint"), hint);
    if (hint) {
      QVERIFY(label("hotKeyState1").endsWith(text(": tockwise new")));
      QVERIFY(label("hotKeyState2").endsWith(text(": tockwise alerts show")));
      QVERIFY(label("hotKeyState4").endsWith(text(": tockwise print --alerts")));
    }
  }

  void theHotKeysTakeEffectWhenTheyAreSaved() {
    open(Pane::General);
    QVERIFY(!isShown("useHotKeysNote"));
    click("useHotKeysBox");
    QVERIFY(isShown("useHotKeysNote"));
    QVERIFY(!m_preferences->settings.boolean(text("useGlobalHotKeys")));
    window().applyPrefs();
    QVERIFY(!isShown("useHotKeysNote"));
    QVERIFY(m_preferences->settings.boolean(text("useGlobalHotKeys")));
  }

  // Sounds.

  void choosingASoundPlaysItOnceAndStoresIt() {
    open(Pane::Alerts);
    auto* popup = find<QComboBox>("reminderSoundPopUp");
    QCOMPARE(popup->count(), 4);
    QCOMPARE(popup->itemText(3), text("whistle.wav"));
    QSignalSpy written(&window(), &PreferenceWindowController::settingsWritten);
    const int before = m_preferences->settings.synchronizations();
    chooseSound("whistle.wav");
    QCOMPARE(m_preferences->soundPlayer.played, std::vector{text("/sounds/whistle.wav")});
    QCOMPARE(stored("selectedSoundFilename"), text("whistle.wav"));
    QCOMPARE(m_preferences->settings.integer(text("reminderSoundPopUpButtonSelectedIndex")),
             qint64(3));
    QVERIFY(m_preferences->settings.synchronizations() > before);
    QCOMPARE(written.size(), 1);
    click("playSoundButton");
    QCOMPARE(m_preferences->soundPlayer.played.size(), size_t(2));
    click("applyButton");
    QCOMPARE(stored("selectedSoundFilename"), text("whistle.wav"));
  }

  void openingPlaysNothingAndStoresNoSound() {
    open(Pane::Alerts);
    QCOMPARE(find<QComboBox>("reminderSoundPopUp")->currentText(), text("round_pop_click.wav"));
    window().applyPrefs();
    QVERIFY(m_preferences->soundPlayer.played.empty());
    QVERIFY(!isSet("selectedSoundFilename") && !isSet("reminderSoundPopUpButtonSelectedIndex"));
  }

  void aListThatHasChangedIsFollowedByName() {
    set("selectedSoundFilename", text("chime.wav"));
    set("reminderSoundPopUpButtonSelectedIndex", 3); // where it stood in another release
    open(Pane::Alerts);
    QCOMPARE(find<QComboBox>("reminderSoundPopUp")->currentText(), text("chime.wav"));
  }

  void aSoundThatIsNotThereIsSaid() {
    set("selectedSoundFilename", text("gong.wav"));
    open(Pane::Alerts);
    QCOMPARE(find<QComboBox>("reminderSoundPopUp")->currentIndex(), -1);
    QCOMPARE(label("soundNote"),
             text("“gong.wav” is not among the sounds; alerts play “round_pop_click.wav”."));
    chooseSound("bell.wav");
    QVERIFY(!isShown("soundNote"));
  }

  void withoutSoundsThereIsNothingToChoose() {
    m_preferences->sounds.clear();
    open(Pane::Alerts);
    QVERIFY(!find<QComboBox>("reminderSoundPopUp")->isEnabled());
    QVERIFY(isShown("soundNote"));
  }

  void aRandomSoundNeedsNoChoice() {
    open(Pane::Alerts);
    click("pickSoundRandomlyBox");
    QVERIFY(m_preferences->settings.boolean(text("pickSoundRandomly")));
    QVERIFY(!find<QComboBox>("reminderSoundPopUp")->isEnabled());
    click("pickSoundRandomlyBox");
    QVERIFY(find<QComboBox>("reminderSoundPopUp")->isEnabled());
  }

  // The pace of mail.

  void theBeatFollowsTheRate() {
    m_preferences->mailBeat.start();
    open(Pane::MailServer);
    QVERIFY(find<QRadioButton>("rate10")->isChecked()); // absent counts as 0
    enableLogLines();
    QTest::ignoreMessage(QtInfoMsg, "Restarted beat");
    QTest::ignoreMessage(QtInfoMsg, "Time Interval: 30.000000");
    click("rate30");
    QCOMPARE(m_preferences->settings.integer(text("rateIndex")), qint64(2));
    QCOMPARE(m_preferences->mailBeat.period(), std::chrono::seconds(30));
    QVERIFY(!find<QRadioButton>("rate10")->isChecked());
  }

  void aRateThatHasNoButtonIsSaid() {
    set("rateIndex", 11);
    open(Pane::MailServer);
    for (const char* rate : {"rate10", "rate20", "rate30", "rate40", "rate50", "rate60"})
      QVERIFY(!find<QRadioButton>(rate)->isChecked());
    QCOMPARE(label("rateNote"), text("Now one message every 120 seconds."));
    click("rate60");
    QCOMPARE(m_preferences->settings.integer(text("rateIndex")), qint64(5));
    QVERIFY(!isShown("rateNote"));
  }

  void aRateOutOfReasonIsSaidAsItBeats_data() {
    QTest::addColumn<qint64>("index");
    QTest::addColumn<QString>("note");
    QTest::newRow("negative") << -4LL << text("Now one message every 10 seconds.");
    QTest::newRow("huge") << std::numeric_limits<qint64>::max()
                          << text("Now one message every 10000010 seconds.");
  }
  void aRateOutOfReasonIsSaidAsItBeats() {
    QFETCH(qint64, index);
    set("rateIndex", index);
    open(Pane::MailServer);
    QTEST(label("rateNote"), "note");
  }

  // The editor.

  void theSampleShowsThePickerThatIsChosen() {
    open(Pane::Editor);
    auto* sample = find<DatePicker>("samplePicker");
    QTRY_VERIFY(sample->height() > 200);
    click("datePicker");
    QTRY_VERIFY(sample->height() < 60);
    QVERIFY(m_preferences->settings.boolean(text("datepicker"))); // until it is saved
    click("datePicker");
    QTRY_VERIFY(sample->height() > 200);
  }

  void theSampleIsNoSetting() {
    open(Pane::Editor);
    find<DatePicker>("samplePicker")->stepBy(3600);
    QVERIFY(!window().isWindowModified());
  }

  void theDefaultTaskIsWrittenWhereItIsUsed() {
    open(Pane::Editor);
    QVERIFY(!find<QWidget>("taskPathField")->isEnabled());
    QVERIFY(!find<QWidget>("browseButton")->isEnabled());
    click("useDefaultTaskBox");
    QVERIFY(find<QWidget>("taskPathField")->isEnabled());
    QVERIFY(!find<QWidget>("browseButton")->isEnabled()); // an address is no file
    find<QComboBox>("taskMenuPopup")->setCurrentIndex(2);
    QVERIFY(find<QWidget>("browseButton")->isEnabled());
    QCOMPARE(find<QComboBox>("taskMenuPopup")->count(), 5);
  }

  // The menu.

  void thereIsASampleOfEachLine() {
    open(Pane::Menu);
    QVERIFY(!label("useAbsoluteSample").isEmpty());
    QCOMPARE(label("useCountdownSample"), text("2 hours, 0 minutes, 0 seconds"));
  }

  // Text messages.

  void carriersAreOfferedAndOthersTyped() {
    open(Pane::Messages);
    auto* carriers = find<QComboBox>("phoneBox");
    QVERIFY(carriers->count() > 5);
    for (int i = 0; i < carriers->count() - 1; ++i) {
      static const QRegularExpression entry(text("^[a-z0-9.-]+\\.[a-z]+ \\([^()]+\\)$"));
      QVERIFY2(entry.match(carriers->itemText(i)).hasMatch(), qPrintable(carriers->itemText(i)));
    }
    QCOMPARE(carriers->itemText(carriers->count() - 1), text("Unsure"));
    const int count = carriers->count();
    carriers->setFocus();
    QTest::keyClicks(carriers->lineEdit(), text("@sms.example.org"));
    QTest::keyClick(carriers->lineEdit(), Qt::Key_Tab);
    QCOMPARE(carriers->currentText(), text("@sms.example.org"));
    QCOMPARE(carriers->count(), count);
  }

  // What does not work yet.

  void whatIsGreySaysWhy() {
    open(Pane::Messages);
    for (const char* name : {"setRecipientToMeButton", "sendTestMailButton", "sendTestSMSButton",
                             "importCalendarButton", "eventsTable", "useiCloudBox"}) {
      auto* control = find<QWidget>(name);
      QVERIFY2(!control->isEnabled(), name);
      QVERIFY2(!control->toolTip().isEmpty(), name);
      QCOMPARE(control->accessibleDescription(), control->toolTip());
    }
    QVERIFY(isShown("messagesReason"));
    window().showPane(Pane::Calendar);
    QVERIFY(label("calendarReason").startsWith(text("No calendar is connected.")));
    QCOMPARE(find<QTableWidget>("eventsTable")->columnCount(), 2);
  }

  // The desktop.

  void theDesktopIsLookedAtWhenItsPaneIsShown() {
    m_preferences->checks = {
        {text("Tray"), true, text("A panel shows the <b>icon</b>."), {}},
        {text("Sound"), false, text("No sound server was found."), text("Install one.")}};
    open(Pane::General);
    window().settingsChanged();
    QTest::qWait(0);
    QCOMPARE(m_preferences->timesChecked, 0);
    window().showPane(Pane::Desktop);
    QTRY_COMPARE(m_preferences->timesChecked, 1);
    const auto rows = window().findChildren<QWidget*>(text("desktopCheck"));
    QCOMPARE(rows.size(), 2);
    QVERIFY(rows[0]->findChild<CheckSign*>()->isOk());
    QVERIFY(!rows[1]->findChild<CheckSign*>()->isOk());
    const auto* detail = rows[0]->findChild<QLabel*>(text("checkDetail"));
    QCOMPARE(detail->text(), text("A panel shows the <b>icon</b>."));
    QCOMPARE(detail->textFormat(), Qt::PlainText);
    QVERIFY(!rows[0]->findChild<QLabel*>(text("checkRemedy")));
    QCOMPARE(rows[1]->findChild<QLabel*>(text("checkRemedy"))->text(), text("Install one."));
  }

  void checkAgainLooksAgain() {
    m_preferences->checks = {{text("Sound"), false, text("No."), text("Install one.")}};
    open(Pane::Desktop);
    QTRY_COMPARE(m_preferences->timesChecked, 1);
    m_preferences->checks = {{text("Sound"), true, text("PipeWire."), {}}};
    click("checkAgainButton");
    QCOMPARE(m_preferences->timesChecked, 2);
    const auto rows = window().findChildren<QWidget*>(text("desktopCheck"));
    QCOMPARE(rows.size(), 1);
    QVERIFY(rows[0]->findChild<CheckSign*>()->isOk());
    window().showPane(Pane::General);
    window().showPane(Pane::Desktop);
    QTRY_COMPARE(m_preferences->timesChecked, 3);
  }
};

QTEST_MAIN(PreferencePanesTest)
#include "preference_panes_test.moc"
