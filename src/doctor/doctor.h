// What works on this desktop, and what to do about the rest: facts in, one line each out.
#pragma once

#include "ports/hot_keys.h"
#include "ports/secret_store.h"

#include <QString>

#include <vector>

namespace tockwise {

struct DesktopCheck {
  QString name; // "tray host", "session bus", …
  bool ok = false;
  QString detail; // one sentence: what was found
  QString remedy; // one sentence: what to do about it; "" when it is well

  friend bool operator==(const DesktopCheck&, const DesktopCheck&) = default;
};

/// A service of the session bus.
struct ServiceFacts {
  bool running = false;
  bool startable = false; // the bus starts it when it is needed
  QString name;           // of the running one, with its version, or ""
};

struct HotKeyFacts {
  bool wanted = false;    // useGlobalHotKeys
  bool available = false; // this desktop gives programs hot keys
  QString detail;         // what gives them, or why nothing does
  /// Of kHotKeys, as the running application has them; Off when none runs.
  HotKeyStates states{};
};

/// A folder in which files are to be written.
struct FolderFacts {
  QString path; // where it is not there yet, the nearest one above it that is
  bool isFolder = false;
  bool mayWrite = false; // the user
  bool diskIsReadOnly = false;
  qint64 bytesAvailable = -1; // on its disk; -1: not known
};

struct StoreFacts {
  QString file;
  FolderFacts folder;  // of the file
  QString failure;     // why the file could not be opened or written, or ""
  FolderFacts backups; // where copies of it are kept
  QString lastBackup;  // date and time of the newest copy, as shown, or "" when there is none
  bool held = false;   // by another Tockwise, that does not answer
  QString damage;      // what was found and done about it when it was read, sentences, or ""
};

/// What was found out about the desktop.
struct DesktopFacts {
  bool applicationRuns = false;
  bool display = false;
  bool sessionBus = false;
  QString trayKind; // "StatusNotifierItem", "XEmbed", or "" where nothing shows icons
  ServiceFacts notifications;
  QString soundProblem; // why no sound can be played, or ""
  HotKeyFacts hotKeys;
  SecretStore::State secretStore = SecretStore::State::Unknown;
  bool loginItemWanted = false; // loginItem
  bool loginItemPresent = false;
  StoreFacts store;
  QString timeZone;
  bool timeZoneKnown = false; // false: unknown to the calendar, so that UTC is used
};

/// The checks, in their order. Any one thread.
std::vector<DesktopCheck> diagnose(const DesktopFacts& facts);

} // namespace tockwise
