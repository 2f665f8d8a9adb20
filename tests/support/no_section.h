// For tests of settings that have nothing to do with reminders.
#pragma once

#include "store/preferences_store.h"

namespace tockwise {

/// Stands where the reminders stand in the store's file, and leaves nothing there.
class NoSection final : public StoreSection {
 public:
  QStringList keys() const override { return {}; }
  quint64 revision() const override { return 0; }
  bool isEmpty() const override { return false; }
  Reading readFrom(const plist::Reader&) override { return {}; }
  void writeTo(plist::Writer&, std::vector<plist::Writer::Object>&,
               std::vector<plist::Writer::Object>&) const override {}
};

} // namespace tockwise
