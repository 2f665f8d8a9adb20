#include "platform/desktop_application.h"

#include "base/log.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

namespace tockwise {
namespace {

GDesktopAppInfo* desktopInfo(void* info) {
  return G_IS_DESKTOP_APP_INFO(info) ? G_DESKTOP_APP_INFO(info) : nullptr;
}

bool isPlayer(GAppInfo* info) {
  GDesktopAppInfo* desktop = desktopInfo(info);
  const char* categories = desktop ? g_desktop_app_info_get_categories(desktop) : nullptr;
  const bool takesFiles = g_app_info_supports_files(info) || g_app_info_supports_uris(info);
  return categories && takesFiles && QByteArray(categories).split(';').contains("Player");
}

/// The first one of a list (which is released) that suits; the others are released too.
template <typename Suits> GAppInfo* firstOf(GList* list, Suits suits) {
  GAppInfo* found = nullptr;
  for (GList* node = list; node && !found; node = node->next) {
    auto* info = static_cast<GAppInfo*>(node->data);
    if (suits(info))
      found = G_APP_INFO(g_object_ref(info));
  }
  g_list_free_full(list, g_object_unref);
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
  g_object_unref(info);
}

DesktopApplication DesktopApplication::ofFile(const QString& path) {
  auto* info = g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData());
  return DesktopApplication(info ? G_APP_INFO(info) : nullptr);
}

DesktopApplication DesktopApplication::ofIdentity(const QString& identity) {
  auto* info = g_desktop_app_info_new(identity.toUtf8().constData());
  return DesktopApplication(info ? G_APP_INFO(info) : nullptr);
}

DesktopApplication DesktopApplication::named(const QString& name) {
  // GIO keeps an index of words, which finds more than we want and costs next to nothing.
  DesktopApplication found;
  bool foundShown = false;
  char*** const groups = g_desktop_app_info_search(name.toUtf8().constData());
  for (char*** group = groups; *group; ++group) {
    for (char** identity = *group; *identity && !foundShown; ++identity) {
      auto candidate = ofIdentity(QString::fromUtf8(*identity));
      if (!candidate || !candidate.isNamed(name))
        continue;
      foundShown = g_app_info_should_show(G_APP_INFO(candidate.m_info.get()));
      if (!found || foundShown)
        found = std::move(candidate);
    }
    g_strfreev(*group);
  }
  g_free(groups);
  return found;
}

bool DesktopApplication::isNamed(const QString& name) const {
  GDesktopAppInfo* desktop = desktopInfo(m_info.get());
  char* plain = desktop ? g_desktop_app_info_get_string(desktop, "Name") : nullptr;
  const QString names[] = {QString::fromUtf8(plain),
                           QString::fromUtf8(g_app_info_get_name(G_APP_INFO(m_info.get())))};
  g_free(plain);
  return std::any_of(std::begin(names), std::end(names), [&](const QString& each) {
    return name.compare(each, Qt::CaseInsensitive) == 0;
  });
}

DesktopApplication DesktopApplication::forType(const QString& contentType) {
  return DesktopApplication(
      g_app_info_get_default_for_type(contentType.toUtf8().constData(), FALSE));
}

DesktopApplication DesktopApplication::forScheme(const QString& scheme) {
  return DesktopApplication(g_app_info_get_default_for_uri_scheme(scheme.toUtf8().constData()));
}

DesktopApplication DesktopApplication::player(const QString& contentType) {
  if (GAppInfo* info =
          firstOf(g_app_info_get_all_for_type(contentType.toUtf8().constData()), isPlayer))
    return DesktopApplication(info);
  return DesktopApplication(firstOf(g_app_info_get_all(), isPlayer));
}

bool DesktopApplication::open(const QByteArray& address) {
  GDesktopAppInfo* desktop = desktopInfo(m_info.get());
  if (!desktop)
    return false;
  QByteArray home = QFile::encodeName(QDir::homePath());
  char* entrysFolder = g_desktop_app_info_get_string(desktop, G_KEY_FILE_DESKTOP_KEY_PATH);
  const bool hasFolder = entrysFolder && *entrysFolder;
  g_free(entrysFolder);
  QByteArray text = address;
  GList* addresses = text.isEmpty() ? nullptr : g_list_append(nullptr, text.data());
  GError* error = nullptr;
  const gboolean started = g_desktop_app_info_launch_uris_as_manager(
      desktop, addresses, nullptr, G_SPAWN_SEARCH_PATH, &setUpChild,
      hasFolder ? nullptr : home.data(), nullptr, nullptr, &error);
  g_list_free(addresses);
  if (!started)
    logLine(QStringLiteral("%1 could not be started: %2")
                .arg(QString::fromUtf8(g_app_info_get_id(G_APP_INFO(m_info.get()))),
                     error ? QString::fromUtf8(error->message) : QString()));
  g_clear_error(&error);
  return started;
}

} // namespace tockwise
