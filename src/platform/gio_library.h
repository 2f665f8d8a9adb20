// What is used of GIO, which is loaded when the first thing is opened. (GLib itself is Qt's.)
#pragma once

#include "base/log.h"
#include "platform/loaded_library.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

namespace tockwise {

/// Its functions have the library's names without "g_".
struct Gio {
  /// Null where there is none, which is logged once. The first call loads it.
  static const Gio* find() {
    static const Gio& gio = *new Gio;
    static const bool isThere = gio.isComplete();
    return isThere ? &gio : nullptr;
  }

  LoadedLibrary library{"gio-2.0", 0};
  decltype(&g_app_info_get_all) app_info_get_all = library["g_app_info_get_all"];
  decltype(&g_app_info_get_all_for_type) app_info_get_all_for_type =
      library["g_app_info_get_all_for_type"];
  decltype(&g_app_info_get_default_for_type) app_info_get_default_for_type =
      library["g_app_info_get_default_for_type"];
  decltype(&g_app_info_get_default_for_uri_scheme) app_info_get_default_for_uri_scheme =
      library["g_app_info_get_default_for_uri_scheme"];
  decltype(&g_app_info_get_id) app_info_get_id = library["g_app_info_get_id"];
  decltype(&g_app_info_get_name) app_info_get_name = library["g_app_info_get_name"];
  decltype(&g_app_info_should_show) app_info_should_show = library["g_app_info_should_show"];
  decltype(&g_app_info_supports_files) app_info_supports_files =
      library["g_app_info_supports_files"];
  decltype(&g_app_info_supports_uris) app_info_supports_uris = library["g_app_info_supports_uris"];
  decltype(&g_desktop_app_info_get_categories) desktop_app_info_get_categories =
      library["g_desktop_app_info_get_categories"];
  decltype(&g_desktop_app_info_get_string) desktop_app_info_get_string =
      library["g_desktop_app_info_get_string"];
  decltype(&g_desktop_app_info_get_type) desktop_app_info_get_type =
      library["g_desktop_app_info_get_type"];
  decltype(&g_desktop_app_info_launch_uris_as_manager) desktop_app_info_launch_uris_as_manager =
      library["g_desktop_app_info_launch_uris_as_manager"];
  decltype(&g_desktop_app_info_new) desktop_app_info_new = library["g_desktop_app_info_new"];
  decltype(&g_desktop_app_info_new_from_filename) desktop_app_info_new_from_filename =
      library["g_desktop_app_info_new_from_filename"];
  decltype(&g_desktop_app_info_search) desktop_app_info_search =
      library["g_desktop_app_info_search"];
  decltype(&g_object_unref) object_unref = library["g_object_unref"];
  decltype(&g_type_check_instance_is_a) type_check_instance_is_a =
      library["g_type_check_instance_is_a"];

 private:
  bool isComplete() const {
    if (!library.problem().isEmpty())
      logLine(QStringLiteral("Applications can't be found: %1").arg(library.problem()));
    return library.problem().isEmpty();
  }
};

} // namespace tockwise
