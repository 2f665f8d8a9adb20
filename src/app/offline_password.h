// The password while no application runs: commands work on the store itself.
#pragma once

#include "platform/secrets/keychain_secret_store.h"
#include "prefs/password_keeping.h"

namespace tockwise {

/// Main thread. Neither starts a secret store nor asks the user.
class OfflinePassword {
 public:
  /// preferences must outlive it.
  explicit OfflinePassword(PreferencesStore& preferences);

  /// Runs the event loop until nothing is under way, but no longer than a second. What the secret
  /// store did not take by then is written to the file.
  void settle();
  QString hint() const { return m_keeping.hint(); }

 private:
  KeychainSecretStore m_secrets;
  PasswordKeeping m_keeping;
};

} // namespace tockwise
