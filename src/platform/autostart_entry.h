// Desktop entries in autostart folders: reading what they start, writing one of our own.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

namespace tockwise {

/// The values of an entry's main group, as far as they decide whether it starts something.
class AutostartEntry {
 public:
  /// bytes: the file. Whatever is no entry has no values. Any thread.
  explicit AutostartEntry(const QByteArray& bytes);

  /// Its command taken apart by the rules for Exec, without field codes and without a preceding
  /// "env NAME=VALUE …"; empty when it breaks the rules.
  QStringList command() const;
  /// Whether the session starts it on a desktop with those names (as $XDG_CURRENT_DESKTOP has
  /// them); what its TryExec names is not looked for.
  bool isStartedOn(const QStringList& desktops) const;
  /// The program that has to be there, or "".
  QString tryExec() const { return value("TryExec"); }

 private:
  QString value(const char* key) const;
  QStringList list(const char* key) const;

  QHash<QByteArray, QByteArray> m_values; // as they stand in the file
};

/// An entry that starts the program, a path or a name to be found in $PATH. Any thread.
QByteArray autostartEntryFor(const QString& program);

/// An entry that starts nothing, in place of one of the same name in a folder of the system.
/// Any thread.
QByteArray hiddenAutostartEntry();

} // namespace tockwise
