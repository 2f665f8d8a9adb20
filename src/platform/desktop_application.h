// An application with a desktop entry.
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace tockwise {

/// One that was found, or none. Main thread.
class DesktopApplication {
 public:
  DesktopApplication() = default;
  /// From a desktop entry's file; none when it is no entry, or its program is not installed.
  static DesktopApplication ofFile(const QString& path);
  /// From its identity: "org.example.Editor.desktop".
  static DesktopApplication ofIdentity(const QString& identity);
  /// The first one of that name, plain or in the user's language, whatever its case; what menus
  /// show comes before what they leave out. The first search reads all entries.
  static DesktopApplication named(const QString& name);
  /// The one that the user or the desktop has chosen for a content type, or else one that opens
  /// it.
  static DesktopApplication forType(const QString& contentType);
  static DesktopApplication forScheme(const QString& scheme);
  /// One that calls itself a media player and takes files; best one that says it plays that type.
  static DesktopApplication player(const QString& contentType);

  explicit operator bool() const { return m_info != nullptr; }

  /// Starts it with the address, if it is given one; false where that fails. The entry's Exec line
  /// is split by its own rules and run without a shell.
  bool open(const QByteArray& address = {});

 private:
  struct Release {
    void operator()(void* info) const;
  };
  explicit DesktopApplication(void* info) : m_info(info) {}
  bool isNamed(const QString& name) const;

  std::unique_ptr<void, Release> m_info; // a GAppInfo of GIO
};

} // namespace tockwise
