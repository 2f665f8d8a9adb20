// What is used of libcanberra, which is loaded for the first sound.
#pragma once

#include "platform/loaded_library.h"

#include <canberra.h>

namespace tockwise {

/// Its functions have the library's names without "ca_".
struct Canberra {
  /// Any thread; the first call loads it. None of its functions may be called unless
  /// library.problem() is empty.
  static const Canberra& instance() {
    static const Canberra& canberra = *new Canberra; // for threads that outlive main, too
    return canberra;
  }

  LoadedLibrary library{"canberra", 0};
  decltype(&ca_context_create) context_create = library["ca_context_create"];
  decltype(&ca_context_open) context_open = library["ca_context_open"];
  decltype(&ca_context_destroy) context_destroy = library["ca_context_destroy"];
  decltype(&ca_context_change_props) context_change_props = library["ca_context_change_props"];
  decltype(&ca_context_play_full) context_play_full = library["ca_context_play_full"];
  decltype(&ca_proplist_create) proplist_create = library["ca_proplist_create"];
  decltype(&ca_proplist_sets) proplist_sets = library["ca_proplist_sets"];
  decltype(&ca_proplist_destroy) proplist_destroy = library["ca_proplist_destroy"];
  decltype(&ca_strerror) text_of_error = library["ca_strerror"];
};

} // namespace tockwise
