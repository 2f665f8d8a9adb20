// What works on this desktop, and what to do about the rest: facts in, one line each out.
#pragma once

#include "ports/hot_keys.h"
#include "ports/secret_store.h"

#include <QString>

#include <optional>
#include <vector>

namespace tockwise {

struct DesktopCheck {
  QString name; // "tray", "session bus", …
  bool ok = false;
  QString detail; // one sentence: what was found
  QString remedy; // one sentence: what to do about it; "" when it is well
};

/// What was found out about the desktop. Facts that only the running application knows are
/// nothing when it does not run.
struct DesktopFacts {
  bool hasDisplay = false;
  bool wayland = false;
  bool sessionBus = false;
  std::optional<bool> applicationRuns;
  std::optional<bool> trayHost; // nothing: could not be asked
  QString trayKind;             // "StatusNotifierItem", "XEmbed" or ""
  bool notificationService = false;
  QString notificationServer; // its name and version, or ""
  bool soundServer = false;
  QString soundDetail;
  bool useGlobalHotKeys = false;
  std::optional<HotKeys::State> hotKeys[4]; // of kHotKeys
  bool hotKeysAvailable = false;
  QString hotKeysDetail;
  SecretStore::State secretStore = SecretStore::State::Unknown;
  bool loginItemWanted = false;
  bool loginItemPresent = false;
  QString storeFile;
  QString storeProblem; // why it can't be written, or ""
  QString lastBackup;   // its date and time as shown, or ""
  QString timeZone;     // IANA name
  bool timeZoneKnown = false;
};

/// The checks in their order. Any one thread.
std::vector<DesktopCheck> diagnose(const DesktopFacts& facts);

} // namespace tockwise
