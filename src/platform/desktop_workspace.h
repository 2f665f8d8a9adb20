// Opening things with what the desktop has for them: its desktop entries and its table of which
// application opens which type (GIO).
#pragma once

#include "ports/workspace.h"

namespace tockwise {

/// Main thread. What is started runs on by itself, in HOME (or where its desktop entry says), and
/// is not waited for beyond its start. Relative paths count from HOME.
class DesktopWorkspace final : public Workspace {
 public:
  /// False for what is no address, or one that nothing opens. A local file's address opens the
  /// file.
  bool openURL(const QString& address) override;
  bool openFile(const QString& path) override;
  /// A sound or a film in the application for its type, anything else (and what has none) in an
  /// application that calls itself a player.
  bool openMediaFile(const QString& path) override;
  /// Tried in this order: an absolute path (a desktop entry, or a program), the file name of an
  /// installed desktop entry with or without its ".desktop", the name that menus show, whatever
  /// its case, a program in PATH.
  bool launchApplication(const QString& application) override;
};

} // namespace tockwise
