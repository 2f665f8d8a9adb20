#include "platform/desktop_application.h"

#include "base/log.h"
#include "platform/gio_library.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <unistd.h>

#include <algorithm>
#include <iterator>

namespace tockwise {
namespace {

GDesktopAppInfo* desktopInfo(const Gio& gio, void* info) {
  const bool isDesktop = gio.type_check_instance_is_a(static_cast<GTypeInstance*>(info),
                                                      gio.desktop_app_info_get_type());
  return isDesktop ? static_cast<GDesktopAppInfo*>(info) : nullptr;
}

GAppInfo* appInfo(void* info) {
  return static_cast<GAppInfo*>(info);
}

bool isPlayer(const Gio& gio, GAppInfo* info) {
  GDesktopAppInfo* desktop = desktopInfo(gio, info);
  const char* categories = desktop ? gio.desktop_app_info_get_categories(desktop) : nullptr;
  const bool takesFiles = gio.app_info_supports_files(info) || gio.app_info_supports_uris(info);
  return categories && takesFiles && QByteArray(categories).split(';').contains("Player");
}

/// The first player of a list; the others are released, and the list is.
GAppInfo* firstPlayer(const Gio& gio, GList* list) {
  GAppInfo* found = nullptr;
  for (GList* node = list; node; node = node->next) {
    if (!found && isPlayer(gio, appInfo(node->data)))
      found = appInfo(node->data);
    else
      gio.object_unref(node->data);
  }
  g_list_free(list);
  return found;
}

/// In the child: where the program is to run, and away from our terminal.
void setUpChild(gpointer folder) {
  ::setsid();
  if (folder && ::chdir(static_cast<const char*>(folder)) != 0)
    ::_exit(127);
}

} // namespace

void DesktopApplication::Release::operator()(void* info) const {
  Gio::find()->object_unref(info);
}

DesktopApplication DesktopApplication::ofFile(const QString& path) {
  const Gio* gio = Gio::find();
  if (!gio)
    return {};
  return DesktopApplication(
      gio->desktop_app_info_new_from_filename(QFile::encodeName(path).constData()));
}

DesktopApplication DesktopApplication::ofIdentity(const QString& identity) {
  const Gio* gio = Gio::find();
  if (!gio)
    return {};
  return DesktopApplication(gio->desktop_app_info_new(identity.toUtf8().constData()));
}

DesktopApplication DesktopApplication::named(const QString& name) {
  const Gio* gio = Gio::find();
  DesktopApplication found;
  if (!gio)
    return found;
  // GIO keeps an index of words, which finds more than we want and costs next to nothing.
  bool foundShown = false;
  char*** const groups = gio->desktop_app_info_search(name.toUtf8().constData());
  for (char*** group = groups; *group; ++group) {
    for (char** identity = *group; *identity && !foundShown; ++identity) {
      auto candidate = ofIdentity(QString::fromUtf8(*identity));
      if (!candidate || !candidate.isNamed(name))
        continue;
      foundShown = gio->app_info_should_show(appInfo(candidate.m_info.get()));
      if (!found || foundShown)
        found = std::move(candidate);
    }
    g_strfreev(*group);
  }
  g_free(groups);
  return found;
}

bool DesktopApplication::isNamed(const QString& name) const {
  const Gio* gio = Gio::find();
  GDesktopAppInfo* desktop = desktopInfo(*gio, m_info.get());
  char* plain = desktop ? gio->desktop_app_info_get_string(desktop, "Name") : nullptr;
  const QString names[] = {QString::fromUtf8(plain),
                           QString::fromUtf8(gio->app_info_get_name(appInfo(m_info.get())))};
  g_free(plain);
  return std::any_of(std::begin(names), std::end(names), [&](const QString& each) {
    return name.compare(each, Qt::CaseInsensitive) == 0;
  });
}

DesktopApplication DesktopApplication::forType(const QString& contentType) {
  const Gio* gio = Gio::find();
  if (!gio)
    return {};
  return DesktopApplication(
      gio->app_info_get_default_for_type(contentType.toUtf8().constData(), FALSE));
}

DesktopApplication DesktopApplication::forScheme(const QString& scheme) {
  const Gio* gio = Gio::find();
  if (!gio)
    return {};
  return DesktopApplication(gio->app_info_get_default_for_uri_scheme(scheme.toUtf8().constData()));
}

DesktopApplication DesktopApplication::player(const QString& contentType) {
  const Gio* gio = Gio::find();
  if (!gio)
    return {};
  const QByteArray type = contentType.toUtf8();
  if (GAppInfo* info = firstPlayer(*gio, gio->app_info_get_all_for_type(type.constData())))
    return DesktopApplication(info);
  return DesktopApplication(firstPlayer(*gio, gio->app_info_get_all()));
}

bool DesktopApplication::open(const QByteArray& address) {
  const Gio* gio = Gio::find();
  GDesktopAppInfo* desktop = gio && m_info ? desktopInfo(*gio, m_info.get()) : nullptr;
  if (!desktop)
    return false;
  QByteArray home = QFile::encodeName(QDir::homePath());
  char* entrysFolder = gio->desktop_app_info_get_string(desktop, G_KEY_FILE_DESKTOP_KEY_PATH);
  const bool hasFolder = entrysFolder && *entrysFolder;
  g_free(entrysFolder);
  QByteArray text = address;
  GList* addresses = text.isEmpty() ? nullptr : g_list_append(nullptr, text.data());
  GError* error = nullptr;
  const gboolean started = gio->desktop_app_info_launch_uris_as_manager(
      desktop, addresses, nullptr, G_SPAWN_SEARCH_PATH, &setUpChild,
      hasFolder ? nullptr : home.data(), nullptr, nullptr, &error);
  g_list_free(addresses);
  if (!started)
    logLine(QStringLiteral("%1 could not be started: %2")
                .arg(QString::fromUtf8(gio->app_info_get_id(appInfo(m_info.get()))),
                     error ? QString::fromUtf8(error->message) : QString()));
  g_clear_error(&error);
  return started;
}

} // namespace tockwise
