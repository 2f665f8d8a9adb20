#include "prefs/integer_value.h"
#include "prefs/save_preferences.h"
#include "recording_settings.h"

#include <QTest>

#include <limits>
#include <memory>

using namespace tockwise;

namespace {

QString text(const char* utf8) {
  return QString::fromUtf8(utf8);
}

const PreferenceAlert kNoAddress{
    text("No Email Address"),
    text("You need to enter an email address you would like to send email reminders to.")};
const PreferenceAlert kNoServerForEmail{
    text("Email Server Settings Not Complete"),
    text("Necessary fields have not been completed in the Mail Server preferences tab. You should "
         "enter all necessary information to send email.")};
const PreferenceAlert kNoNumber{
    text("SMS Settings Incomplete"),
    text("You need to enter a correct phone number and carrier email suffix to send SMS "
         "messages.")};
const PreferenceAlert kNoServerForSMS{
    text("Email Server Settings Not Complete"),
    text("Necessary fields have not been completed in the Mail Server preferences tab. You should "
         "enter all necessary information to send SMS.")};
const PreferenceAlert kNoDisplay{text("Queue Display Options"),
                                 text("Please choose at least one queue display option.")};

PreferenceForm serverForm(qint64 authentication = 0, const char* name = "",
                          const char* password = "") {
  PreferenceForm form;
  form.emailAddressAD = text("me@example.org");
  form.smtpServerNameAD = text("mail.example.org");
  form.serverPortAD = text("25");
  form.authenticationAD = authentication;
  form.usernameAD = text(name);
  form.passwordAD = text(password);
  return form;
}

} // namespace

class SavePreferencesTest : public QObject {
  Q_OBJECT

  std::unique_ptr<RecordingSettings> m_settings;

  SavedPreferences save(const PreferenceForm& form) {
    return tockwise::savePreferences(form, *m_settings);
  }
  bool on(const char* key) const { return m_settings->boolean(text(key)); }
  QString string(const char* key) const { return m_settings->string(text(key)); }
  qint64 number(const char* key) const { return m_settings->integer(text(key)); }
  bool wrote(const char* key) const { return m_settings->calls.contains(text(key)); }

 private Q_SLOTS:
  void init() { m_settings = std::make_unique<RecordingSettings>(); }

  void savingWritesTheKeysInTheirOrder() {
    m_settings->prepare("sendEmail", true);
    m_settings->prepare("sendSMS", true);
    save(serverForm(2, "me", "secret"));
    QCOMPARE(m_settings->calls,
             text("emailAddressAD smtpServerNameAD serverPortAD useSSL authenticationAD usernameAD "
                  "passwordAD useADPrefs useADPrefsNoAuth sendEmail sendSMS email sms phoneBox "
                  "useGlobalHotKeys useDefaultTask defaultTask defaultTaskPath useAbsolute "
                  "useCountdown noReminder clockoption datepicker loginItem synchronize")
                 .split(u' '));
  }

  void whatWasSavedIsWhatTheWindowShows() {
    PreferenceForm form = serverForm(3, "me", "secret");
    form.serverPortAD = text("465");
    form.useSSL = false;
    form.email = text("you@example.org");
    form.sms = text("5551234");
    form.phoneBox = text("@sms.example.org");
    form.useGlobalHotKeys = true;
    form.useDefaultTask = true;
    form.defaultTask = 4;
    form.defaultTaskPath = text("/bin/true");
    form.useAbsolute = false;
    form.noReminder = true;
    form.clockoption = 3;
    form.datepicker = false;
    form.loginItem = true;
    const SavedPreferences saved = save(form);
    QVERIFY(saved.valid);
    QVERIFY(saved.complete);
    const PreferenceForm shown = preferenceForm(*m_settings);
    QCOMPARE(shown.emailAddressAD, form.emailAddressAD);
    QCOMPARE(shown.smtpServerNameAD, form.smtpServerNameAD);
    QCOMPARE(shown.serverPortAD, form.serverPortAD);
    QCOMPARE(shown.useSSL, false);
    QCOMPARE(shown.authenticationAD, 3);
    QCOMPARE(shown.usernameAD, form.usernameAD);
    QCOMPARE(shown.passwordAD, form.passwordAD);
    QCOMPARE(shown.email, form.email);
    QCOMPARE(shown.sms, form.sms);
    QCOMPARE(shown.phoneBox, form.phoneBox);
    QCOMPARE(shown.useGlobalHotKeys, true);
    QCOMPARE(shown.useDefaultTask, true);
    QCOMPARE(shown.defaultTask, 4);
    QCOMPARE(shown.defaultTaskPath, form.defaultTaskPath);
    QCOMPARE(shown.useAbsolute, false);
    QCOMPARE(shown.useCountdown, true);
    QCOMPARE(shown.noReminder, true);
    QCOMPARE(shown.clockoption, 3);
    QCOMPARE(shown.datepicker, false);
    QCOMPARE(shown.loginItem, true);
  }

  void aPortThatWasNeverSavedShowsAnEmptyField() {
    m_settings->prepare("serverPortAD", QString());
    QCOMPARE(preferenceForm(*m_settings).serverPortAD, QString());
    m_settings->prepare("serverPortAD", 587);
    QCOMPARE(preferenceForm(*m_settings).serverPortAD, text("587"));
  }

  void emptyPortBecomes587() {
    PreferenceForm form = serverForm();
    form.serverPortAD.clear();
    QCOMPARE(save(form).serverPortAD, text("587"));
    QCOMPARE(m_settings->value(text("serverPortAD")), Value(587));
  }

  void thePortIsStoredAsTheNumberThatItStartsWith_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<qint64>("number");
    const auto row = [](const char* typed, qint64 number) {
      QTest::newRow(typed) << QString::fromUtf8(typed) << number;
    };
    row("25", 25);
    row("12abc", 12);
    row("abc", 0);
    row("abc12", 0);
    row("  465 ", 465);
    row("+26", 26);
    row("-3", -3);
    row("-", 0);
    row(" ", 0);
    row("5 8 7", 5);
    row("٥٨٧", 0);
    row("99999999999999999999", std::numeric_limits<qint64>::max());
    row("-99999999999999999999", std::numeric_limits<qint64>::min());
  }
  void thePortIsStoredAsTheNumberThatItStartsWith() {
    QFETCH(QString, typed);
    QFETCH(qint64, number);
    PreferenceForm form = serverForm();
    form.serverPortAD = typed;
    QCOMPARE(save(form).serverPortAD, typed); // the field keeps what was typed
    QCOMPARE(m_settings->value(text("serverPortAD")), Value(number));
    QCOMPARE(integerValue(typed), number);
  }

  void emptyServerFieldsKeepTheirOldValues() {
    m_settings->prepare("emailAddressAD", text("old@example.org"));
    m_settings->prepare("smtpServerNameAD", text("old.example.org"));
    m_settings->prepare("usernameAD", text("old name"));
    m_settings->prepare("passwordAD", text("old password"));
    PreferenceForm form;
    form.authenticationAD = 2;
    save(form);
    QCOMPARE(string("emailAddressAD"), text("old@example.org"));
    QCOMPARE(string("smtpServerNameAD"), text("old.example.org"));
    QCOMPARE(string("usernameAD"), text("old name"));
    QCOMPARE(string("passwordAD"), text("old password"));
  }

  void withoutAuthenticationNameAndPasswordAreNotStored() {
    save(serverForm(0, "me", "secret"));
    QVERIFY(!wrote("usernameAD"));
    QVERIFY(!wrote("passwordAD"));
  }

  void completenessFollowsWhatWasFilledIn_data() {
    QTest::addColumn<qint64>("authentication");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("authenticates");
    QTest::newRow("none") << 0LL << QString() << QString() << false;
    QTest::newRow("none, though both are filled") << 0LL << text("me") << text("pw") << false;
    QTest::newRow("both") << 1LL << text("me") << text("pw") << true;
    QTest::newRow("both, last method") << 3LL << text("me") << text("pw") << true;
    QTest::newRow("no password") << 2LL << text("me") << QString() << false;
    QTest::newRow("no name") << 2LL << QString() << text("pw") << false;
    QTest::newRow("neither") << 2LL << QString() << QString() << false;
  }
  void completenessFollowsWhatWasFilledIn() {
    QFETCH(qint64, authentication);
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(bool, authenticates);
    m_settings->prepare("useADPrefs", !authenticates);
    m_settings->prepare("useADPrefsNoAuth", authenticates);
    save(serverForm(authentication, qPrintable(name), qPrintable(password)));
    QCOMPARE(on("useADPrefs"), authenticates);
    QCOMPARE(on("useADPrefsNoAuth"), !authenticates);
  }

  void aPasswordThatCannotBeReadNowCounts() {
    m_settings->setUnread("passwordAD");
    save(serverForm(2, "me", ""));
    QVERIFY(on("useADPrefs"));
    QVERIFY(!on("useADPrefsNoAuth"));
    QVERIFY(!wrote("passwordAD"));
    save(serverForm(0, "me", ""));
    QVERIFY(!on("useADPrefs"));
  }

  void anIncompleteServerKeepsBothFlags_data() {
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("server");
    QTest::newRow("no server") << text("me@example.org") << QString();
    QTest::newRow("no address") << QString() << text("mail.example.org");
    QTest::newRow("neither") << QString() << QString();
  }
  void anIncompleteServerKeepsBothFlags() {
    QFETCH(QString, address);
    QFETCH(QString, server);
    for (const bool before : {false, true}) {
      m_settings->prepare("useADPrefs", before);
      m_settings->prepare("useADPrefsNoAuth", !before);
      PreferenceForm form = serverForm(2, "me", "secret");
      form.emailAddressAD = address;
      form.smtpServerNameAD = server;
      QVERIFY(save(form).valid);
      QCOMPARE(on("useADPrefs"), before);
      QCOMPARE(on("useADPrefsNoAuth"), !before);
    }
  }

  void missingRecipientsAreToldAndSwitchedOff_data() {
    QTest::addColumn<bool>("sendEmail");
    QTest::addColumn<QString>("email");
    QTest::addColumn<bool>("sendSMS");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("server");
    QTest::addColumn<bool>("script");
    QTest::addColumn<QString>("alerts"); // a letter each
    const auto row = [](const char* name, bool sendEmail, const char* email, bool sendSMS,
                        const char* number, const char* suffix, bool server, bool script,
                        const char* alerts) {
      QTest::newRow(name) << sendEmail << text(email) << sendSMS << text(number) << text(suffix)
                          << server << script << text(alerts);
    };
    row("nothing is sent", false, "", false, "", "", false, false, "");
    row("all is there", true, "a@b", true, "1", "@c", true, false, "");
    row("no address", true, "", false, "", "", true, false, "A");
    row("no address, no server", true, "", false, "", "", false, false, "A");
    row("no server", true, "a@b", false, "", "", false, false, "E");
    row("no server, but the script", true, "a@b", false, "", "", false, true, "");
    row("no address, but the script", true, "", false, "", "", false, true, "A");
    row("no number", false, "", true, "", "@c", true, false, "N");
    row("no suffix", false, "", true, "1", "", true, false, "N");
    row("no suffix, no server", false, "", true, "1", "", false, false, "N");
    row("message without server", false, "", true, "1", "@c", false, false, "S");
    row("message with the script", false, "", true, "1", "@c", false, true, "");
    row("both without server", true, "a@b", true, "1", "@c", false, false, "ES");
    row("both without anything", true, "", true, "", "", false, false, "AN");
  }
  void missingRecipientsAreToldAndSwitchedOff() {
    QFETCH(bool, sendEmail);
    QFETCH(QString, email);
    QFETCH(bool, sendSMS);
    QFETCH(QString, number);
    QFETCH(QString, suffix);
    QFETCH(bool, server);
    QFETCH(bool, script);
    QFETCH(QString, alerts);
    m_settings->prepare("sendEmail", sendEmail);
    m_settings->prepare("sendSMS", sendSMS);
    m_settings->prepare("UseMailScript", script);
    PreferenceForm form = server ? serverForm() : PreferenceForm();
    form.email = email;
    form.sms = number;
    form.phoneBox = suffix;
    const SavedPreferences saved = save(form);
    std::vector<PreferenceAlert> expected;
    for (const QChar letter : std::as_const(alerts)) {
      expected.push_back(letter == u'A'   ? kNoAddress
                         : letter == u'E' ? kNoServerForEmail
                         : letter == u'N' ? kNoNumber
                                          : kNoServerForSMS);
    }
    QCOMPARE(saved.alerts, expected);
    QCOMPARE(saved.valid, expected.empty());
    QVERIFY(saved.complete); // an alert does not stop the saving
    QVERIFY(wrote("loginItem"));
    QCOMPARE(on("sendEmail"), sendEmail && !alerts.contains(u'A'));
    QCOMPARE(on("sendSMS"), sendSMS && !alerts.contains(u'N'));
    QCOMPARE(string("email"), email); // empty fields of this pane are stored as they are
    QCOMPARE(string("sms"), number);
    QCOMPARE(string("phoneBox"), suffix);
  }

  void withoutAQueueDisplayTheRestIsNotStored() {
    for (const char* key : {"useAbsolute", "useCountdown", "noReminder", "datepicker", "loginItem"})
      m_settings->prepare(key, true);
    m_settings->prepare("clockoption", 2);
    PreferenceForm form = serverForm();
    form.defaultTaskPath = text("/bin/true");
    form.useAbsolute = false;
    form.useCountdown = false;
    form.clockoption = 4;
    form.datepicker = false;
    const SavedPreferences saved = save(form);
    QVERIFY(!saved.valid);
    QVERIFY(!saved.complete);
    QCOMPARE(saved.alerts, std::vector<PreferenceAlert>{kNoDisplay});
    QCOMPARE(string("defaultTaskPath"), text("/bin/true"));
    for (const char* key :
         {"useAbsolute", "useCountdown", "noReminder", "clockoption", "datepicker", "loginItem"})
      QVERIFY2(!wrote(key), key);
    QCOMPARE(number("clockoption"), 2);
  }

  void theQueueDisplayIsToldAfterWhatElseIsMissing() {
    m_settings->prepare("sendEmail", true);
    PreferenceForm form;
    form.useAbsolute = false;
    form.useCountdown = false;
    QCOMPARE(save(form).alerts, (std::vector<PreferenceAlert>{kNoAddress, kNoDisplay}));
  }

  void oneQueueDisplayIsEnough() {
    PreferenceForm form;
    form.useAbsolute = false;
    QVERIFY(save(form).valid);
    form.useAbsolute = true;
    form.useCountdown = false;
    QVERIFY(save(form).valid);
    QVERIFY(!on("useCountdown"));
  }
};

QTEST_GUILESS_MAIN(SavePreferencesTest)
#include "save_preferences_test.moc"
