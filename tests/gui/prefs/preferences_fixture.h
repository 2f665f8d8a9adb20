// The preferences window with stand-ins for everything around it.
#pragma once

#include "prefs/ui/preference_window_controller.h"
#include "store/reminder_store.h"
#include "support/fakes.h"

#include <memory>

namespace tockwise {

/// What a test sees of the window's surroundings; the window is made when it is first asked for.
class Preferences {
 public:
  MemorySettings settings{registeredDefaults()};
  FakePrompter prompter;
  FakeSoundPlayer soundPlayer;
  FakeHotKeys hotKeys;
  FakeLoginItems loginItems;
  FakeClock clock{Date{790000000}};
  MailBeat mailBeat{settings};
  QStringList sounds{QStringLiteral("bell.wav"), QStringLiteral("chime.wav"),
                     QStringLiteral("round_pop_click.wav"), QStringLiteral("whistle.wav")};
  QString passwordHint;
  std::vector<DesktopCheck> checks;
  int timesChecked = 0;

  PreferenceWindowController& window() {
    if (!m_window)
      m_window = std::make_unique<PreferenceWindowController>(surroundings());
    return *m_window;
  }
  void closeForGood() { m_window.reset(); }

 private:
  PreferenceSurroundings surroundings() {
    return {settings,
            prompter,
            soundPlayer,
            hotKeys,
            loginItems,
            mailBeat,
            sounds,
            [](const QString& name) { return QStringLiteral("/sounds/") + name; },
            [this] { return passwordHint; },
            [this] {
              ++timesChecked;
              return checks;
            },
            clock};
  }

  std::unique_ptr<PreferenceWindowController> m_window;
};

} // namespace tockwise
