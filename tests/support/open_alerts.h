// Alert windows whose surroundings are faked. Tests that use them link tockwise_alerts.
#pragma once

#include "alerts/alert_windows.h"
#include "support/fakes.h"

namespace tockwise {

/// What alert windows need besides somebody who asks.
struct AlertSurroundings {
  ReminderQueue queue;
  MemorySettings settings;
  FakeSoundPlayer player;
  AlertSounds sounds{settings, player, {}, AlertSounds::systemRandom()};
};

/// Alert windows whose questions the test answers.
struct OpenAlerts : AlertSurroundings {
  FakePrompter prompter;
  AlertWindows alerts{queue, sounds, prompter};
};

/// What the alerts say, the oldest first.
inline QStringList textsOf(const AlertWindows& alerts) {
  QStringList result;
  for (const AlertEntry& entry : alerts.entries())
    result += entry.text;
  return result;
}

} // namespace tockwise
