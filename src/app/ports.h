// What the application is given of the desktop.
#pragma once

#include "ports/pasteboard.h"
#include "ports/power_events.h"
#include "ports/prompter.h"
#include "ports/script_host.h"
#include "ports/sound_player.h"
#include "ports/wake_timer.h"
#include "ports/workspace.h"

#include <memory>

namespace tockwise {

struct Ports {
  std::unique_ptr<Prompter> prompter;
  std::unique_ptr<SoundPlayer> soundPlayer;
  std::unique_ptr<PowerEvents> powerEvents;
  std::unique_ptr<WakeTimer> wakeTimer;
  std::unique_ptr<Workspace> workspace;
  std::unique_ptr<ScriptHost> scriptHost;
  std::unique_ptr<Pasteboard> pasteboard;
};

} // namespace tockwise
