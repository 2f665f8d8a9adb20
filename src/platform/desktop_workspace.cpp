#include "platform/desktop_workspace.h"

#include "platform/desktop_application.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace tockwise {
namespace {

const QString kEntrySuffix = QStringLiteral(".desktop");

/// As it was written, but for what an address cannot hold.
QByteArray encoded(const QString& address) {
  return address.toUtf8().toPercentEncoding("-._~:/?#[]@!$&'()*+,;=").replace("%25", "%");
}

QString existing(const QString& path) {
  const QString absolute = QDir::home().absoluteFilePath(path);
  return path.isEmpty() || !QFileInfo::exists(absolute) ? QString() : absolute;
}

QMimeType typeOf(const QString& path) {
  return QMimeDatabase().mimeTypeForFile(path);
}

/// The application for a type, or for what the type is a kind of. That everything is a row of
/// bytes does not count.
DesktopApplication applicationFor(const QMimeType& type) {
  for (const QString& name : QStringList(type.name()) + type.allAncestors()) {
    if (name == u"application/octet-stream")
      continue;
    if (auto application = DesktopApplication::forType(name))
      return application;
  }
  return {};
}

bool isMedia(const QMimeType& type) {
  if (type.inherits(QStringLiteral("application/ogg")))
    return true;
  for (const QString& name : QStringList(type.name()) + type.allAncestors()) {
    if (name.startsWith(u"audio/") || name.startsWith(u"video/"))
      return true;
  }
  return false;
}

/// Without a shell, in HOME, and in a session of its own.
bool startProgram(const QString& program) {
  QProcess process;
  process.setProgram(program);
  process.setWorkingDirectory(QDir::homePath());
  process.setStandardInputFile(QProcess::nullDevice());
  return process.startDetached();
}

bool isProgram(const QString& path) {
  const QFileInfo info(path);
  return info.isFile() && info.isExecutable();
}

} // namespace

bool DesktopWorkspace::openURL(const QString& address) {
  const QUrl url(address, QUrl::TolerantMode);
  if (!url.isValid() || url.scheme().isEmpty())
    return false;
  if (url.isLocalFile())
    return openFile(url.toLocalFile());
  const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
  if (isWeb && url.host().isEmpty())
    return false;
  if (auto application = DesktopApplication::forScheme(url.scheme()))
    return application.open(encoded(address));
  return QDesktopServices::openUrl(url);
}

bool DesktopWorkspace::openFile(const QString& path) {
  const QString file = existing(path);
  if (file.isEmpty())
    return false;
  auto application = applicationFor(typeOf(file));
  return application && application.open(QUrl::fromLocalFile(file).toEncoded());
}

bool DesktopWorkspace::openMediaFile(const QString& path) {
  const QString file = existing(path);
  if (file.isEmpty())
    return false;
  const QMimeType type = typeOf(file);
  auto application = isMedia(type) ? applicationFor(type) : DesktopApplication();
  if (!application)
    application = DesktopApplication::player(type.name());
  return application && application.open(QUrl::fromLocalFile(file).toEncoded());
}

bool DesktopWorkspace::launchApplication(const QString& application) {
  if (application.isEmpty() || application.contains(QChar(u'\0')))
    return false;
  if (application.contains(u'/')) {
    const QString path = existing(application);
    if (path.endsWith(kEntrySuffix)) {
      auto entry = DesktopApplication::ofFile(path);
      return entry && entry.open();
    }
    return isProgram(path) && startProgram(path);
  }
  const QString identity =
      application.endsWith(kEntrySuffix) ? application : application + kEntrySuffix;
  auto entry = DesktopApplication::ofIdentity(identity);
  if (!entry)
    entry = DesktopApplication::named(application);
  if (entry)
    return entry.open();
  const QString program = QStandardPaths::findExecutable(application);
  return !program.isEmpty() && startProgram(program);
}

} // namespace tockwise
