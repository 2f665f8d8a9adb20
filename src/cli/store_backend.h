// Commands carried out on the store itself, under its lock, while no application runs.
#pragma once

#include "base/clock.h"
#include "cli/backend.h"
#include "store/reminder_store.h"

#include <memory>

namespace tockwise {

class CommandService;

/// Main thread. What concerns the password waits for the secret store, a second at most.
class StoreBackend final : public Backend {
 public:
  /// Busy when another process holds the store.
  static Result<std::unique_ptr<StoreBackend>> open(const PreferencesStore::Paths& paths,
                                                    const Clock& clock);
  ~StoreBackend() override;
  Result<QVariant> call(const QString& method, const QVariantList& arguments) override;

  const StoreNotice& loadReport() const { return m_store->loadReport(); }

 private:
  Result<QVariant> callForPassword(const QString& method, const QVariantList& arguments);
  explicit StoreBackend(std::unique_ptr<ReminderStore> store);
  std::unique_ptr<ReminderStore> m_store;
  std::unique_ptr<CommandService> m_commands;
};

} // namespace tockwise
