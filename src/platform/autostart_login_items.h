// The login item as an XDG autostart entry.
//
// An entry is ours when its command is this very program and nothing else: another command that
// starts Tockwise for something (tockwise add ..., a shell) is the user's own.
#pragma once

#include "ports/login_items.h"

#include <QString>
#include <QStringList>

namespace tockwise {

/// Main thread. Reads the folders anew at each call.
class AutostartLoginItems final : public LoginItems {
 public:
  struct Places {
    QString folder;            // autostart entries of the user
    QStringList systemFolders; // those of the system, the most important first
    QStringList searchPath;    // folders in which programs are found by their names
    QStringList commonFolders; // those of them that every session has
    QStringList desktops;      // names of this desktop
  };

  /// program: the path of the program that is to be started.
  AutostartLoginItems(Places places, QString program);
  /// $XDG_CONFIG_HOME/autostart, $XDG_CONFIG_DIRS, $PATH, $XDG_CURRENT_DESKTOP, and this program.
  static AutostartLoginItems ofUser();

  bool isPresent() const override;
  /// Leaves everything as it is when the program is started already. An entry of ours that starts
  /// nothing any more (switched off, the program moved) is written anew.
  Result<void> add() override;
  /// Entries in folders of the system are hidden by one of the user's.
  Result<void> remove() override;

 private:
  QStringList entryNames() const;
  QString effectivePath(const QString& name) const;
  bool startsUs(const QString& path) const;
  bool isOurProgram(const QString& word) const;
  QString findProgram(const QString& word) const;
  bool isInEffect(const QString& path) const;
  Result<void> write(const QString& name, const QByteArray& bytes) const;

  Places m_places;
  QString m_program;
  QString m_canonical; // the file that it is in the end
};

} // namespace tockwise
