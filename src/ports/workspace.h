// Opening addresses, files and applications with what the desktop has for them.
#pragma once

#include <QString>

namespace tockwise {

/// Main thread. Each returns whether something was started; nothing passes through a shell.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// address: as written, scheme included.
  virtual bool openURL(const QString& address) = 0;
  /// With the application that opens files of its type.
  virtual bool openFile(const QString& path) = 0;
  /// With the media player for its type.
  virtual bool openMediaFile(const QString& path) = 0;
  /// application: a desktop entry (its file or its name) or a program (its path or its name).
  virtual bool launchApplication(const QString& application) = 0;
};

} // namespace tockwise
