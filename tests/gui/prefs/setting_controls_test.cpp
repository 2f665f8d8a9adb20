// Every setting and its control: what the control stores, and what it shows of the store.
#include "preferences_fixture.h"
#include "prefs/setting_table.h"
#include "support/named_child.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <set>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

SettingType typeOf(const QString& key) {
  return findSetting(key)->type;
}

} // namespace

class SettingControlsTest : public QObject {
  Q_OBJECT

  std::unique_ptr<Preferences> m_preferences;

  template <typename T> T* find(const QString& name) {
    return namedChild<T>(m_preferences->window(), qPrintable(name));
  }
  void store(const QString& key, const QString& value) {
    const QStringList words =
        typeOf(key) == SettingType::StringArray ? value.split(u'\n') : QStringList{value};
    Result<Value> parsed = parseSetting(typeOf(key), words);
    QVERIFY(parsed);
    m_preferences->settings.setValue(key, *parsed);
  }
  QString stored(const QString& key) {
    return formatSetting(typeOf(key), m_preferences->settings.value(key));
  }

  /// The value of the control as text, as the setting would be written.
  QString shown(QWidget* control, const QString& key) {
    if (auto* field = qobject_cast<QLineEdit*>(control))
      return field->text();
    if (auto* popup = qobject_cast<QComboBox*>(control))
      return typeOf(key) == SettingType::String ? popup->currentText()
                                                : QString::number(popup->currentIndex());
    auto* button = qobject_cast<QAbstractButton*>(control);
    if (typeOf(key) == SettingType::Boolean)
      return button->isChecked() ? text("YES") : text("NO");
    return button->isChecked() ? text("checked") : text("not checked");
  }

  /// Changes the control with the keyboard so that it shows the value.
  void type(QWidget* control, const QString& value) {
    control->setFocus();
    if (auto* field = qobject_cast<QLineEdit*>(control)) {
      field->selectAll();
      QTest::keyClicks(field, value);
    } else if (auto* popup = qobject_cast<QComboBox*>(control); popup && popup->isEditable()) {
      popup->lineEdit()->selectAll();
      QTest::keyClicks(popup->lineEdit(), value);
    } else if (popup) {
      bool isIndex = false;
      const int index = value.toInt(&isIndex);
      const int wanted = isIndex ? index : popup->findText(value);
      QTest::keyClick(popup, Qt::Key_Home);
      while (popup->currentIndex() < wanted)
        QTest::keyClick(popup, Qt::Key_Down);
    } else {
      QTest::keyClick(control, Qt::Key_Space);
    }
  }

  void open() {
    m_preferences->window().prefs();
    QVERIFY(QTest::qWaitForWindowExposed(&m_preferences->window()));
  }

 private Q_SLOTS:
  void init() { m_preferences = std::make_unique<Preferences>(); }
  void cleanup() { m_preferences.reset(); }

  // The table of the preferences, without what another control changes.
  void controls_data() {
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("value"); // another than the default
    QTest::addColumn<bool>("atOnce");
    const auto row = [](const char* key, const char* control, const char* value,
                        bool atOnce = false) {
      QTest::newRow(key) << text(control) << text(value) << atOnce;
    };
    row("email", "emailField", "me@example.org");
    row("sendEmail", "sendEmailBox", "YES", true);
    row("sms", "phoneField", "555 0100");
    row("phoneBox", "phoneBox", "@sms.example.org (Mine)");
    row("sendSMS", "sendSMSBox", "YES", true);
    row("loginItem", "loginItemBox", "YES");
    row("noReminder", "noReminderCheckBox", "YES");
    row("emailAddressAD", "emailAddressField", "me@example.net");
    row("smtpServerNameAD", "smtpServerNameField", "smtp.example.net");
    row("serverPortAD", "serverPortField", "2525");
    row("authenticationAD", "authPopup", "3");
    row("usernameAD", "username", "me");
    row("passwordAD", "password", "a \"b\" $c");
    row("useSSL", "sslCheckBox", "NO");
    row("useGlobalHotKeys", "useHotKeysBox", "YES");
    row("defaultTask", "taskMenuPopup", "4");
    row("defaultTaskPath", "taskPathField", "/tmp/a b.sh");
    row("useDefaultTask", "useDefaultTaskBox", "NO");
    row("useCountdown", "useCountdown", "NO");
    row("useAbsolute", "useAbsolute", "NO");
    row("datepicker", "datePicker", "NO");
    row("showRuler", "showRulerBox", "YES", true);
    row("selectedSoundFilename", "reminderSoundPopUp", "whistle.wav", true);
    row("reminderSoundPopUpButtonSelectedIndex", "reminderSoundPopUp", "1", true);
    row("pickSoundRandomly", "pickSoundRandomlyBox", "YES", true);
    row("showUndoChangesAlert", "undoChangesBox", "NO", true);
    row("UseMailScript", "useMailScriptBox", "YES", true);
    row("contentTypeIndex", "contentTypePopup", "1", true);
    row("importEventsFromCalendar", "importEventsFromCalendarBox", "YES", true);
  }

  void storesWhatTheUserChoseAndNothingBefore_data() { controls_data(); }
  void storesWhatTheUserChoseAndNothingBefore() {
    QFETCH(QString, control);
    QFETCH(QString, value);
    QFETCH(bool, atOnce);
    const QString key = QString::fromLatin1(QTest::currentDataTag());
    store(text("authenticationAD"), text("2")); // what is grey otherwise
    store(text("useDefaultTask"), text("YES"));
    const QString before = stored(key);
    open();
    auto* widget = find<QWidget>(control);
    QVERIFY(widget->isEnabled());
    type(widget, value);
    QCOMPARE(shown(widget, key), value);
    QCOMPARE(stored(key), atOnce ? value : before);
    if (atOnce)
      return;
    QVERIFY(m_preferences->window().isWindowModified());
    QTest::keyClick(find<QWidget>(text("applyButton")), Qt::Key_Space);
    QCOMPARE(stored(key), value);
    QVERIFY(!m_preferences->window().isWindowModified());
    QCOMPARE(shown(widget, key), value);
  }

  void showsWhatIsStored_data() { controls_data(); }
  void showsWhatIsStored() {
    QFETCH(QString, control);
    QFETCH(QString, value);
    const QString key = QString::fromLatin1(QTest::currentDataTag());
    store(key, value);
    m_preferences->loginItems.present = true; // that box shows what is so
    open();
    QCOMPARE(shown(find<QWidget>(control), key), value);
    QVERIFY(!m_preferences->window().isWindowModified());
  }

  void showsAtOnceWhatWasChangedFromOutside_data() { showsWhatIsStored_data(); }
  void showsAtOnceWhatWasChangedFromOutside() {
    QFETCH(QString, control);
    QFETCH(QString, value);
    const QString key = QString::fromLatin1(QTest::currentDataTag());
    store(text("useDefaultTask"), text("YES"));
    open();
    auto* widget = find<QWidget>(control);
    QVERIFY(shown(widget, key) != value);
    store(key, value);
    m_preferences->loginItems.present = true;
    m_preferences->window().settingsChanged();
    QCOMPARE(shown(widget, key), value);
    QVERIFY(!m_preferences->window().isWindowModified());
  }

  void whatTheUserIsTypingIsKept() {
    open();
    auto* field = find<QLineEdit>(text("emailField"));
    type(field, text("me@"));
    store(text("email"), text("other@example.org"));
    store(text("sms"), text("555"));
    m_preferences->window().settingsChanged();
    QCOMPARE(field->text(), text("me@"));
    QCOMPARE(find<QLineEdit>(text("phoneField"))->text(), text("555"));
    type(field, text("me@example.org"));
    m_preferences->window().applyPrefs();
    QCOMPARE(stored(text("email")), text("me@example.org"));
    store(text("email"), text("third@example.org")); // saved: from now on it follows again
    m_preferences->window().settingsChanged();
    QCOMPARE(field->text(), text("third@example.org"));
  }

  void whatWasTypedAndTakenBackFollowsAgain() {
    open();
    auto* field = find<QLineEdit>(text("emailField"));
    type(field, text("x"));
    store(text("email"), text("other@example.org"));
    m_preferences->window().settingsChanged();
    QTest::keyClick(field, Qt::Key_Backspace);
    m_preferences->window().settingsChanged();
    QCOMPARE(field->text(), text("other@example.org"));
  }

  void theIconIsChosenAmongFourPictures() {
    store(text("clockoption"), text("3"));
    open();
    const auto clock = [this](int number) {
      return find<QAbstractButton>(text("clockButton%1").arg(number));
    };
    QVERIFY(clock(3)->isChecked());
    QVERIFY(!clock(3)->icon().isNull());
    m_preferences->window().showPane(PreferenceWindowController::Pane::Menu);
    QTest::mouseClick(clock(2), Qt::LeftButton);
    QVERIFY(!clock(3)->isChecked());
    clock(2)->setFocus();
    QTest::keyClick(clock(2), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QVERIFY(clock(4)->isChecked());
    QCOMPARE(stored(text("clockoption")), text("3"));
    m_preferences->window().applyPrefs();
    QCOMPARE(stored(text("clockoption")), text("4"));
    store(text("clockoption"), text("1"));
    m_preferences->window().settingsChanged();
    QVERIFY(clock(1)->isChecked());
  }

  void whatAControlCannotShowStaysAsItIs_data() {
    QTest::addColumn<QString>("value");
    QTest::newRow("clockoption") << text("9");
    QTest::newRow("authenticationAD") << text("12");
    QTest::newRow("defaultTask") << text("-3");
    QTest::newRow("contentTypeIndex") << text("5");
    QTest::newRow("rateIndex") << text("11");
  }
  void whatAControlCannotShowStaysAsItIs() {
    QFETCH(QString, value);
    const QString key = QString::fromLatin1(QTest::currentDataTag());
    store(key, value);
    open();
    m_preferences->window().applyPrefs();
    QCOMPARE(stored(key), value);
  }

  void everySettingHasAControl() {
    // Chosen in the menu, found out on saving, or the calendar's own.
    const std::set<QString> elsewhere{text("sortType"),        text("showItemIndex"),
                                      text("showRichText"),    text("truncateReminders"),
                                      text("iCalCalendars"),   text("useADPrefs"),
                                      text("useADPrefsNoAuth")};
    std::set<QString> shownSettings;
    for (const QWidget* widget : m_preferences->window().findChildren<QWidget*>()) {
      for (const QString& key : widget->property("setting").toStringList())
        shownSettings.insert(key);
    }
    for (const SettingRow& row : settingTable()) {
      const QString key = QString::fromUtf16(row.key);
      QVERIFY2(shownSettings.contains(key) != elsewhere.contains(key), qPrintable(key));
    }
    for (const QString& key : shownSettings)
      QVERIFY2(findSetting(key), qPrintable(key));
  }
};

QTEST_MAIN(SettingControlsTest)
#include "setting_controls_test.moc"
