// Which time zone and locale the user has now.
#pragma once

#include <QString>

#include <sys/stat.h>

#include <array>
#include <string>

namespace tockwise {

/// Where the system keeps its zone.
struct ZoneFiles {
  QByteArray localtime = "/etc/localtime";
  QByteArray timezone = "/etc/timezone";
};

/// The zone that TZ names: an identifier (also after ':' or as the path of a zone file), a rule
/// ("CET-1CEST,M3.5.0,M10.5.0/3"), or, set and empty, UTC.
QString zoneFromVariable(const QByteArray& TZ);

/// The system's zone: where the localtime link leads; of a copied file, what /etc/timezone says,
/// else the rule at the end of the file itself; else UTC.
QString zoneFromFiles(const ZoneFiles& files);

/// The ICU identifier of a locale as the environment names it ("de_DE.UTF-8" gives "de_DE"; "C",
/// "POSIX" and "" give English).
QString localeFromVariable(const QByteArray& value);

/// Watches the environment and the files. One thread per object.
class UserEnvironment {
 public:
  explicit UserEnvironment(ZoneFiles files = {});

  /// Looks again. True when zone() or locale() have another value than before, and at the first
  /// call. Costs a few environment variables, and with TZ unset a look at the files' times;
  /// allocates nothing while nothing changes.
  bool refresh();

  const QString& zone() const { return m_zone; }
  const QString& locale() const { return m_locale; }

 private:
  /// What tells one state of a file from another.
  struct FileState {
    dev_t device = 0;
    ino_t inode = 0;
    timespec modified{};
    timespec changed{};
    bool isLink = false;

    static FileState of(const QByteArray& path);
    bool operator==(const FileState& other) const;
  };
  bool refreshZone();
  bool refreshLocale();

  ZoneFiles m_files;
  QString m_zone;
  QString m_locale;
  bool m_seen = false;
  bool m_variableSet = false;
  std::string m_variable;
  std::string m_localeVariable;
  std::array<FileState, 2> m_fileStates;
};

} // namespace tockwise
