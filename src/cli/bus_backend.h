// Commands carried out by the running application, over D-Bus.
#pragma once

#include "cli/backend.h"

#include <memory>

namespace tockwise {

class BusBackend final : public Backend {
 public:
  /// Nothing when there is no session bus or no application on it. Does not start one.
  static std::unique_ptr<BusBackend> connect();
  /// Busy when the application went away meanwhile.
  Result<QVariant> call(const QString& method, const QVariantList& arguments) override;
};

} // namespace tockwise
