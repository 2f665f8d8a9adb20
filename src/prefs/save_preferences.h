// The rules of saving the preferences window: what it shows in, settings and alerts out.
#pragma once

#include "store/settings.h"

#include <QString>

#include <vector>

namespace tockwise {

/// What the controls of the window hold, as text where they are fields.
struct PreferenceForm {
  QString emailAddressAD;
  QString smtpServerNameAD;
  QString serverPortAD; // as typed
  bool useSSL = true;
  qint64 authenticationAD = 0; // index of the pop-up
  QString usernameAD;
  QString passwordAD;
  QString email;
  QString sms;
  QString phoneBox;
  bool useGlobalHotKeys = false;
  bool useDefaultTask = false;
  qint64 defaultTask = 0; // index of the pop-up
  QString defaultTaskPath;
  bool useAbsolute = true;
  bool useCountdown = true;
  bool noReminder = false;
  qint64 clockoption = 1; // tag of the selected cell
  bool datepicker = true;
  bool loginItem = false;
};

/// What the user is to be told, in this order.
struct PreferenceAlert {
  QString title;
  QString text;
  friend bool operator==(const PreferenceAlert&, const PreferenceAlert&) = default;
};

struct SavedPreferences {
  bool valid = true;    // no alert
  bool complete = true; // false: stopped at the queue display rule, the rest is not stored
  QString serverPortAD; // what the port field shows afterwards
  std::vector<PreferenceAlert> alerts;
};

/// What the window shows for these settings. Main thread.
PreferenceForm preferenceForm(const Settings& settings);

/// Writes form to the settings in the order of the rules and synchronises them. With complete in
/// the result the caller announces the clock option and the change. Main thread.
SavedPreferences savePreferences(const PreferenceForm& form, Settings& settings);

} // namespace tockwise
