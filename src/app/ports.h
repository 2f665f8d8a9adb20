// What the application is given of the desktop.
#pragma once

#include "ports/hot_keys.h"
#include "ports/login_items.h"
#include "ports/notification_centre.h"
#include "ports/pasteboard.h"
#include "ports/power_events.h"
#include "ports/prompter.h"
#include "ports/script_host.h"
#include "ports/secret_store.h"
#include "ports/sound_player.h"
#include "ports/wake_timer.h"
#include "ports/workspace.h"

#include <memory>

namespace tockwise {

/// None is null. Each is used on the main thread.
struct Ports {
  std::unique_ptr<Prompter> prompter;
  std::unique_ptr<SoundPlayer> soundPlayer;
  std::unique_ptr<PowerEvents> powerEvents;
  std::unique_ptr<WakeTimer> wakeTimer;
  std::unique_ptr<Workspace> workspace;
  std::unique_ptr<ScriptHost> scriptHost;
  std::unique_ptr<Pasteboard> pasteboard;
  std::unique_ptr<HotKeys> hotKeys;
  std::unique_ptr<LoginItems> loginItems;
  std::unique_ptr<NotificationCentre> notificationCentre;
  std::unique_ptr<SecretStore> secretStore;
};

} // namespace tockwise
