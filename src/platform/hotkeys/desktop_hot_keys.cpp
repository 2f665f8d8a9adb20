#include "platform/hotkeys/desktop_hot_keys.h"

namespace tockwise {
namespace {

class NoHotKeys final : public HotKeys {
 public:
  bool isAvailable() const override { return false; }
  void registerHotKeys() override {}
  void unregisterHotKeys() override {}
  State state(HotKey) const override { return State::NotAvailable; }
  QString detail() const override { return {}; }
};

} // namespace

std::unique_ptr<HotKeys> desktopHotKeys() {
  return std::make_unique<NoHotKeys>();
}

} // namespace tockwise
