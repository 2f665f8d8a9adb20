// Passwords in the desktop's secret service or wallet, through QtKeychain.
#pragma once

#include "ports/secret_store.h"

namespace tockwise {

class KeychainSecretStore final : public SecretStore {
  Q_OBJECT
 public:
  explicit KeychainSecretStore(QObject* parent = nullptr);
  ~KeychainSecretStore() override;

  State state() const override;
  void read(const QString& key,
            std::function<void(bool ok, std::optional<QString> secret)> answer) override;
  void write(const QString& key, const QString& secret,
             std::function<void(bool ok)> answer) override;
  void remove(const QString& key, std::function<void(bool ok)> answer) override;

 private:
  State m_state = State::Unknown;
};

} // namespace tockwise
