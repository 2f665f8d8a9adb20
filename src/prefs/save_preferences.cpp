#include "prefs/save_preferences.h"

#include "prefs/integer_value.h"

namespace tockwise {
namespace {

const QString kStandardPort = QStringLiteral("587");
const QString kServerIncomplete = QStringLiteral("Email Server Settings Not Complete");

void set(Settings& settings, const char* key, Value value) {
  settings.setValue(QString::fromLatin1(key), std::move(value));
}

bool setUnlessEmpty(Settings& settings, const char* key, const QString& text) {
  if (text.isEmpty())
    return false;
  set(settings, key, text);
  return true;
}

bool boolean(const Settings& settings, const char* key) {
  return settings.boolean(QString::fromLatin1(key));
}

// Whether the server can be used at all. Who it is used as is settled only when it can.
bool saveServer(const PreferenceForm& form, const QString& port, Settings& settings) {
  const bool hasAddress = setUnlessEmpty(settings, "emailAddressAD", form.emailAddressAD);
  const bool hasServer = setUnlessEmpty(settings, "smtpServerNameAD", form.smtpServerNameAD);
  set(settings, "serverPortAD", integerValue(port));
  set(settings, "useSSL", form.useSSL);
  set(settings, "authenticationAD", form.authenticationAD);
  bool authenticates = false;
  if (form.authenticationAD > 0) {
    const bool hasName = setUnlessEmpty(settings, "usernameAD", form.usernameAD);
    // One that cannot be read now left its field empty; it is a password all the same.
    const bool hasPassword = setUnlessEmpty(settings, "passwordAD", form.passwordAD) ||
                             settings.isUnread(QStringLiteral("passwordAD"));
    authenticates = hasName && hasPassword;
  }
  if (!hasAddress || !hasServer)
    return false;
  set(settings, "useADPrefs", authenticates);
  set(settings, "useADPrefsNoAuth", !authenticates);
  return true;
}

void saveRecipients(const PreferenceForm& form, bool serverComplete, Settings& settings,
                    std::vector<PreferenceAlert>& alerts) {
  const bool sendEmail = boolean(settings, "sendEmail");
  const bool sendSMS = boolean(settings, "sendSMS");
  const bool hasNumber = !form.phoneBox.isEmpty() && !form.sms.isEmpty();
  const bool canSend = serverComplete || boolean(settings, "UseMailScript");
  if (sendEmail && form.email.isEmpty())
    set(settings, "sendEmail", false);
  if (sendSMS && !hasNumber)
    set(settings, "sendSMS", false);
  if (sendEmail && form.email.isEmpty()) {
    alerts.push_back(
        {QStringLiteral("No Email Address"),
         QStringLiteral(
             "You need to enter an email address you would like to send email reminders to.")});
  } else if (sendEmail && !canSend) {
    alerts.push_back(
        {kServerIncomplete,
         QStringLiteral("Necessary fields have not been completed in the Mail Server preferences "
                        "tab. You should enter all necessary information to send email.")});
  }
  if (sendSMS && !hasNumber) {
    alerts.push_back({QStringLiteral("SMS Settings Incomplete"),
                      QStringLiteral("You need to enter a correct phone number and carrier email "
                                     "suffix to send SMS messages.")});
  } else if (sendSMS && !canSend) {
    alerts.push_back(
        {kServerIncomplete,
         QStringLiteral("Necessary fields have not been completed in the Mail Server preferences "
                        "tab. You should enter all necessary information to send SMS.")});
  }
}

} // namespace

PreferenceForm preferenceForm(const Settings& settings) {
  const auto text = [&](const char* key) { return settings.string(QString::fromLatin1(key)); };
  const auto number = [&](const char* key) { return settings.integer(QString::fromLatin1(key)); };
  PreferenceForm form;
  form.emailAddressAD = text("emailAddressAD");
  form.smtpServerNameAD = text("smtpServerNameAD");
  form.serverPortAD = text("serverPortAD");
  form.useSSL = boolean(settings, "useSSL");
  form.authenticationAD = number("authenticationAD");
  form.usernameAD = text("usernameAD");
  form.passwordAD = text("passwordAD");
  form.email = text("email");
  form.sms = text("sms");
  form.phoneBox = text("phoneBox");
  form.useGlobalHotKeys = boolean(settings, "useGlobalHotKeys");
  form.useDefaultTask = boolean(settings, "useDefaultTask");
  form.defaultTask = number("defaultTask");
  form.defaultTaskPath = text("defaultTaskPath");
  form.useAbsolute = boolean(settings, "useAbsolute");
  form.useCountdown = boolean(settings, "useCountdown");
  form.noReminder = boolean(settings, "noReminder");
  form.clockoption = number("clockoption");
  form.datepicker = boolean(settings, "datepicker");
  form.loginItem = boolean(settings, "loginItem");
  return form;
}

SavedPreferences savePreferences(const PreferenceForm& form, Settings& settings) {
  SavedPreferences saved;
  saved.serverPortAD = form.serverPortAD.isEmpty() ? kStandardPort : form.serverPortAD;
  const bool serverComplete = saveServer(form, saved.serverPortAD, settings);
  saveRecipients(form, serverComplete, settings, saved.alerts);
  set(settings, "email", form.email);
  set(settings, "sms", form.sms);
  set(settings, "phoneBox", form.phoneBox);
  set(settings, "useGlobalHotKeys", form.useGlobalHotKeys);
  set(settings, "useDefaultTask", form.useDefaultTask);
  set(settings, "defaultTask", form.defaultTask);
  set(settings, "defaultTaskPath", form.defaultTaskPath);
  saved.complete = form.useAbsolute || form.useCountdown;
  if (saved.complete) {
    set(settings, "useAbsolute", form.useAbsolute);
    set(settings, "useCountdown", form.useCountdown);
    set(settings, "noReminder", form.noReminder);
    set(settings, "clockoption", form.clockoption);
    set(settings, "datepicker", form.datepicker);
    set(settings, "loginItem", form.loginItem);
  } else {
    saved.alerts.push_back({QStringLiteral("Queue Display Options"),
                            QStringLiteral("Please choose at least one queue display option.")});
  }
  settings.synchronize();
  saved.valid = saved.alerts.empty();
  return saved;
}

} // namespace tockwise
