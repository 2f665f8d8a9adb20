// What the preferences window works with.
#pragma once

#include "base/clock.h"
#include "doctor/doctor.h"
#include "mail/mail_beat.h"
#include "ports/hot_keys.h"
#include "ports/login_items.h"
#include "ports/prompter.h"
#include "ports/sound_player.h"
#include "store/settings.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace tockwise {

/// The references must outlive the window. Functions are called on the main thread.
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
  /// For the dates of samples.
  const Clock& clock;
};

} // namespace tockwise
