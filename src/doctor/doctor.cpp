#include "doctor/doctor.h"

#include <QStringList>

namespace tockwise {
namespace {

using State = HotKeys::State;

constexpr qint64 kEnoughSpace = qint64(5) * 1024 * 1024; // bytes

DesktopCheck well(const char16_t* name, const QString& detail) {
  return {QString::fromUtf16(name), true, detail, QString()};
}

DesktopCheck ill(const char16_t* name, const QString& detail, const QString& remedy) {
  return {QString::fromUtf16(name), false, detail, remedy};
}

DesktopCheck trayHost(const DesktopFacts& facts) {
  const char16_t* const name = u"tray host";
  if (!facts.trayKind.isEmpty())
    return well(name, QStringLiteral("A panel shows tray icons (%1).").arg(facts.trayKind));
  if (!facts.display) {
    return ill(name, QStringLiteral("There is no display here."),
               QStringLiteral("Run this in your desktop session; the other commands work "
                              "without a display."));
  }
  return ill(name, QStringLiteral("Nothing on this desktop shows tray icons."),
             QStringLiteral("Start Tockwise again to see its menu in a window, or add a tray to "
                            "your panel (on GNOME, the AppIndicator extension)."));
}

DesktopCheck sessionBus(const DesktopFacts& facts) {
  const char16_t* const name = u"session bus";
  if (facts.sessionBus)
    return well(name, QStringLiteral("It answers."));
  return ill(name, QStringLiteral("It cannot be reached."),
             QStringLiteral("Log in through a display manager, or start the session with "
                            "dbus-run-session; without it commands cannot reach the running "
                            "application."));
}

DesktopCheck notificationService(const DesktopFacts& facts) {
  const char16_t* const name = u"notification service";
  if (facts.notifications.running) {
    return well(name, facts.notifications.name.isEmpty()
                          ? QStringLiteral("It answers.")
                          : QStringLiteral("%1 answers.").arg(facts.notifications.name));
  }
  if (facts.notifications.startable)
    return well(name, QStringLiteral("It is started when a notification is shown."));
  return ill(name, QStringLiteral("Nothing on this desktop shows notifications."),
             QStringLiteral("Install a notification daemon, for example dunst; alert windows "
                            "do not need one."));
}

DesktopCheck sound(const DesktopFacts& facts) {
  const char16_t* const name = u"sound";
  if (facts.soundProblem.isEmpty())
    return well(name, QStringLiteral("Sounds can be played."));
  return ill(name, facts.soundProblem,
             QStringLiteral("Start PipeWire or PulseAudio, and install libcanberra-pulse."));
}

QString keyNames(const HotKeyFacts& facts, State state) {
  QStringList names;
  for (const HotKey key : kHotKeys) {
    if (facts.states[size_t(key) - 1] == state)
      names += QStringLiteral("Ctrl+Super+") + QChar(letterOf(key));
  }
  return names.join(QStringLiteral(", "));
}

DesktopCheck hotKeys(const DesktopFacts& facts) {
  const char16_t* const name = u"hot keys";
  const HotKeyFacts& keys = facts.hotKeys;
  if (!keys.wanted)
    return well(name, QStringLiteral("They are switched off in the preferences."));
  if (!keys.available) {
    const QString why =
        keys.detail.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(keys.detail);
    return ill(name, QStringLiteral("This desktop gives programs no hot keys%1.").arg(why),
               QStringLiteral("Bind keys of your own in the desktop's settings to \"tockwise "
                              "new\", \"tockwise alerts show\", \"tockwise alerts hide\" and "
                              "\"tockwise print --alerts\"."));
  }
  if (const QString taken = keyNames(keys, State::Taken); !taken.isEmpty()) {
    return ill(name, QStringLiteral("Another program has %1.").arg(taken),
               QStringLiteral("Free them in that program or in the desktop's settings."));
  }
  if (!facts.applicationRuns)
    return well(name,
                QStringLiteral("They are registered when Tockwise runs (%1).").arg(keys.detail));
  if (keyNames(keys, State::Registered).isEmpty()) {
    return ill(name, QStringLiteral("They are not registered yet (%1).").arg(keys.detail),
               QStringLiteral("Switch them off and on again in the preferences; the desktop may "
                              "have asked for your consent."));
  }
  return well(name, QStringLiteral("They are registered (%1).").arg(keys.detail));
}

DesktopCheck secretService(const DesktopFacts& facts) {
  const char16_t* const name = u"secret service";
  switch (facts.secretStore) {
  case SecretStore::State::Available:
    return well(name, QStringLiteral("The mail password is kept in the desktop's password store."));
  case SecretStore::State::Locked:
    return ill(name, QStringLiteral("The desktop's password store is locked."),
               QStringLiteral("Unlock it: log in with your password, or open the desktop's "
                              "password manager."));
  case SecretStore::State::Unknown:
  case SecretStore::State::NotAvailable:
    break;
  }
  return ill(name,
             QStringLiteral("There is none: a mail password is kept in Tockwise's own file, which "
                            "only you can read."),
             QStringLiteral("Install gnome-keyring or KWallet to keep it encrypted."));
}

DesktopCheck autostart(const DesktopFacts& facts) {
  const char16_t* const name = u"autostart";
  if (facts.loginItemWanted == facts.loginItemPresent) {
    return well(name, facts.loginItemPresent
                          ? QStringLiteral("Tockwise is started when you log in.")
                          : QStringLiteral("Tockwise is not started at login, as the preferences "
                                           "say."));
  }
  if (facts.loginItemWanted) {
    return ill(name,
               QStringLiteral("The preferences start Tockwise at login, and its autostart "
                              "entry is missing."),
               QStringLiteral("Switch starting at login off and on again in the preferences."));
  }
  return ill(name,
             QStringLiteral("An autostart entry starts Tockwise at login, and the "
                            "preferences do not."),
             QStringLiteral("Switch starting at login on and off again in the preferences."));
}

/// Why no file can be written in a folder, one sentence, or "".
QString problemOf(const FolderFacts& folder) {
  if (!folder.isFolder)
    return QStringLiteral("%1 is no folder.").arg(folder.path);
  if (!folder.mayWrite)
    return QStringLiteral("You may not write in %1.").arg(folder.path);
  if (folder.diskIsReadOnly)
    return QStringLiteral("The disk of %1 is read-only.").arg(folder.path);
  if (folder.bytesAvailable >= 0 && folder.bytesAvailable < kEnoughSpace)
    return QStringLiteral("The disk of %1 is full.").arg(folder.path);
  return {};
}

// A remedy follows it.
QString sentence(const QString& text) {
  return text.endsWith(u'.') ? text : text + u'.';
}

DesktopCheck storeWritable(const DesktopFacts& facts) {
  const char16_t* const name = u"store writable";
  if (!facts.store.damage.isEmpty()) {
    return ill(name, facts.store.damage,
               QStringLiteral("Look through your reminders: some may be missing or empty."));
  }
  if (facts.store.held) {
    return ill(name,
               QStringLiteral("Another Tockwise has %1 open, and does not answer from here.")
                   .arg(facts.store.file),
               QStringLiteral("End that one and start it again: it hangs, or belongs to another "
                              "session."));
  }
  const QString problem =
      facts.store.failure.isEmpty() ? problemOf(facts.store.folder) : sentence(facts.store.failure);
  if (problem.isEmpty())
    return well(name, QStringLiteral("%1 can be written.").arg(facts.store.file));
  return ill(name, problem,
             QStringLiteral("Check the folder's permissions and the free space on its disk: %1")
                 .arg(facts.store.file));
}

DesktopCheck lastBackup(const DesktopFacts& facts) {
  const char16_t* const name = u"last backup";
  if (const QString problem = problemOf(facts.store.backups); !problem.isEmpty()) {
    return ill(name, problem,
               QStringLiteral("Check the permissions of that folder and the free space on its "
                              "disk."));
  }
  if (facts.store.lastBackup.isEmpty())
    return well(name, QStringLiteral("None yet: a copy is kept before each day's first change."));
  return well(name, QStringLiteral("The newest copy was kept on %1.").arg(facts.store.lastBackup));
}

DesktopCheck timeZone(const DesktopFacts& facts) {
  const char16_t* const name = u"time zone";
  if (facts.timeZoneKnown)
    return well(name, QStringLiteral("%1.").arg(facts.timeZone));
  return ill(name,
             QStringLiteral("\"%1\" is no time zone, so that UTC is used.").arg(facts.timeZone),
             QStringLiteral("Set the system's time zone, or correct the variable TZ."));
}

} // namespace

std::vector<DesktopCheck> diagnose(const DesktopFacts& facts) {
  return {trayHost(facts),   sessionBus(facts),    notificationService(facts), sound(facts),
          hotKeys(facts),    secretService(facts), autostart(facts),           storeWritable(facts),
          lastBackup(facts), timeZone(facts)};
}

} // namespace tockwise
