// Commands carried out by the running application, over D-Bus.
#pragma once

#include "cli/backend.h"
#include "cli/bus_call.h"

#include <memory>

namespace tockwise {

/// Main thread. Waiting for an answer runs an event loop.
class BusBackend final : public Backend {
 public:
  /// Nothing when there is no session bus or no application on it. Does not start one.
  static std::unique_ptr<BusBackend> connect();
  /// How long each call waits for its answer; for as long as it takes unless this is called.
  void setPatience(std::chrono::milliseconds patience) { m_patience = patience; }
  /// Busy when the application went away meanwhile, or did not answer in time.
  Result<QVariant> call(const QString& method, const QVariantList& arguments) override;

 private:
  std::chrono::milliseconds m_patience = kAnyTime;
};

} // namespace tockwise
