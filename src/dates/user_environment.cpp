#include "dates/user_environment.h"

#include "dates/posix_zone.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace tockwise {
namespace {

const QString kFallbackZone = QStringLiteral("UTC");
const QString kFallbackLocale = QStringLiteral("en_US");

/// The identifier in the path of a file of the zone database, or "".
QString identifierInPath(const QString& path) {
  const QString folder = QStringLiteral("zoneinfo/");
  const qsizetype at = path.indexOf(folder);
  if (at < 0)
    return {};
  QString name = path.mid(at + folder.size());
  for (const QString& variant : {QStringLiteral("posix/"), QStringLiteral("right/")}) {
    if (name.startsWith(variant))
      name.remove(0, variant.size());
  }
  return name;
}

/// A compiled zone file ends with the rule of its present and future, between two line feeds.
QString ruleInZoneFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return {};
  const QByteArray content = file.read(1 << 20);
  if (!content.startsWith("TZif") || !content.endsWith('\n'))
    return {};
  const qsizetype start = content.lastIndexOf('\n', content.size() - 2);
  return start < 0 ? QString()
                   : QString::fromLatin1(content.mid(start + 1, content.size() - start - 2));
}

QString zoneOfFile(const QString& path) {
  if (QString name = identifierInPath(path); isZoneIdentifier(name))
    return name;
  // A link of another name may lead into the database, over several steps.
  if (QString name = identifierInPath(QFileInfo(path).canonicalFilePath()); isZoneIdentifier(name))
    return name;
  return {};
}

} // namespace

QString zoneFromVariable(const QByteArray& TZ) {
  QString zone = QString::fromLocal8Bit(TZ);
  if (zone.startsWith(u':'))
    zone.remove(0, 1);
  if (zone.isEmpty())
    return kFallbackZone;
  if (!zone.startsWith(u'/'))
    return zone;
  if (QString name = zoneOfFile(zone); !name.isEmpty())
    return name;
  QString rule = ruleInZoneFile(zone);
  return rule.isEmpty() ? kFallbackZone : rule;
}

QString zoneFromFiles(const ZoneFiles& files) {
  const QString localtime = QFile::decodeName(files.localtime);
  const QFileInfo link(localtime);
  if (link.isSymbolicLink()) {
    if (QString name = identifierInPath(link.symLinkTarget()); isZoneIdentifier(name))
      return name;
  }
  if (QString name = zoneOfFile(localtime); !name.isEmpty())
    return name;
  if (QFile file(QFile::decodeName(files.timezone));
      link.exists() && file.open(QIODevice::ReadOnly)) {
    QString name = QString::fromUtf8(file.readLine(256)).trimmed();
    if (isZoneIdentifier(name))
      return name;
  }
  QString rule = ruleInZoneFile(localtime);
  return rule.isEmpty() ? kFallbackZone : rule;
}

QString localeFromVariable(const QByteArray& value) {
  const QString whole = QString::fromLatin1(value);
  QString name = whole.section(u'@', 0, 0).section(u'.', 0, 0);
  if (name.isEmpty() || name == u"C" || name == u"POSIX")
    return kFallbackLocale;
  // The one kind of modifier that changes how a date is written.
  const QString modifier = whole.section(u'@', 1);
  const qsizetype country = name.indexOf(u'_') < 0 ? name.size() : name.indexOf(u'_');
  if (modifier == u"latin")
    name.insert(country, QStringLiteral("_Latn"));
  else if (modifier == u"cyrillic")
    name.insert(country, QStringLiteral("_Cyrl"));
  return name;
}

UserEnvironment::FileState UserEnvironment::FileState::of(const QByteArray& path) {
  struct stat info {};
  if (::lstat(path.constData(), &info) != 0)
    return {};
  return {info.st_dev, info.st_ino, info.st_mtim, info.st_ctim, S_ISLNK(info.st_mode)};
}

bool UserEnvironment::FileState::operator==(const FileState& other) const {
  const auto same = [](const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
  };
  return device == other.device && inode == other.inode && same(modified, other.modified) &&
         same(changed, other.changed);
}

UserEnvironment::UserEnvironment(ZoneFiles files) : m_files(std::move(files)) {}

bool UserEnvironment::refresh() {
  const bool zoneChanged = refreshZone();
  const bool localeChanged = refreshLocale();
  m_seen = true;
  return zoneChanged || localeChanged;
}

bool UserEnvironment::refreshZone() {
  const char* variable = std::getenv("TZ");
  QString zone;
  if (variable) {
    if (m_seen && m_variableSet && m_variable == variable)
      return false;
    m_variable = variable;
    zone = zoneFromVariable(QByteArray(variable));
  } else {
    // Only where localtime is no link does the other file count.
    std::array<FileState, 2> states{FileState::of(m_files.localtime), FileState{}};
    if (!states[0].isLink)
      states[1] = FileState::of(m_files.timezone);
    if (m_seen && !m_variableSet && states == m_fileStates)
      return false;
    m_fileStates = states;
    zone = zoneFromFiles(m_files);
  }
  m_variableSet = variable != nullptr;
  const bool changed = !m_seen || zone != m_zone;
  m_zone = zone;
  return changed;
}

bool UserEnvironment::refreshLocale() {
  const char* value = "";
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    if (const char* candidate = std::getenv(name); candidate && *candidate) {
      value = candidate;
      break;
    }
  }
  if (m_seen && m_localeVariable == value)
    return false;
  m_localeVariable = value;
  const QString locale = localeFromVariable(QByteArray(value));
  const bool changed = !m_seen || locale != m_locale;
  m_locale = locale;
  return changed;
}

} // namespace tockwise
