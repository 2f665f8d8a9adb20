// The preferences window.
#pragma once

#include "doctor/doctor.h"
#include "mail/mail_beat.h"
#include "ports/hot_keys.h"
#include "ports/login_items.h"
#include "ports/prompter.h"
#include "ports/sound_player.h"
#include "prefs/save_preferences.h"
#include "store/settings.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>

namespace Ui {
class PreferenceWindowCalendar;
}

namespace tockwise {

/// What the window works with; the references must outlive it.
struct PreferenceSurroundings {
  Settings& settings;
  Prompter& prompter;
  SoundPlayer& soundPlayer;
  HotKeys& hotKeys;
  LoginItems& loginItems;
  MailBeat& mailBeat;
  /// File names of the program's sounds, and where one is.
  QStringList sounds;
  std::function<QString(const QString& name)> pathOfSound;
  /// Where the password is kept, in one sentence for the user; "" when there is nothing to say.
  std::function<QString()> passwordHint;
  /// What works on this desktop. Called when its pane is shown.
  std::function<std::vector<DesktopCheck>()> desktopChecks;
};

/// Main thread.
class PreferenceWindowController final : public QWidget {
  Q_OBJECT
 public:
  explicit PreferenceWindowController(PreferenceSurroundings surroundings,
                                      QWidget* parent = nullptr);
  ~PreferenceWindowController() override;

  /// Shows the window, its controls filled from the settings when it was closed, and brings it to
  /// the front.
  void prefs();
  /// The settings were changed from outside: shows the new values in every control that the user
  /// did not change since it was filled.
  void settingsChanged();
  /// Whether every setting is valid.
  bool savePreferences();

 Q_SIGNALS:
  /// The clock option as it was saved.
  void changeClockIcon(qint64 value);
  /// Everything was stored.
  void updatePrefs();
  /// Some setting was written; for whoever shows settings.
  void settingsWritten();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  PreferenceSurroundings m_surroundings;
  std::unique_ptr<Ui::PreferenceWindowCalendar> m_ui;
};

} // namespace tockwise
