#include "platform/secrets/keychain_secret_store.h"

namespace tockwise {

KeychainSecretStore::KeychainSecretStore(QObject* parent) : SecretStore(parent) {}

KeychainSecretStore::~KeychainSecretStore() = default;

SecretStore::State KeychainSecretStore::state() const {
  return m_state;
}

void KeychainSecretStore::read(const QString&, std::function<void(bool, std::optional<QString>)>) {}

void KeychainSecretStore::write(const QString&, const QString&, std::function<void(bool)>) {}

void KeychainSecretStore::remove(const QString&, std::function<void(bool)>) {}

} // namespace tockwise
