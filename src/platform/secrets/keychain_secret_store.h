// Passwords in the desktop's secret service or wallet, through QtKeychain.
#pragma once

#include "ports/secret_store.h"

#include <vector>

namespace QKeychain {
class Job;
}

namespace tockwise {

class SecretProbe;

/// Main thread, which is never held up: what is slow is asked for, and waited for in the event
/// loop.
class KeychainSecretStore final : public SecretStore {
  Q_OBJECT
 public:
  explicit KeychainSecretStore(QObject* parent = nullptr);
  ~KeychainSecretStore() override;

  State state() const override { return m_state; }
  void look(std::function<void()> done) override;
  void wake(std::function<void()> done) override;
  void read(const QString& key,
            std::function<void(bool ok, std::optional<QString> secret)> answer) override;
  void write(const QString& key, const QString& secret,
             std::function<void(bool ok)> answer) override;
  void remove(const QString& key, std::function<void(bool ok)> answer) override;

 private:
  class Answer;
  enum class Outcome { Done, NotFound, Failed };
  enum class Waking { No, Yes };
  void look(Waking waking, std::function<void()> done);
  void lookAt(std::size_t probe, Waking waking);
  void found(State state);
  /// Starts the job; answer gets what became of it, once.
  void run(QKeychain::Job* job, const QString& key, std::function<void(Outcome)> answer);

  std::vector<SecretProbe*> m_probes; // children, in the order in which QtKeychain asks them
  State m_state = State::Unknown;
  bool m_used = false; // QtKeychain has something to do with the service
  bool m_looking = false;
  std::optional<Waking> m_again;                // what was asked for while looking
  std::vector<std::function<void()>> m_waiting; // for what looking finds
};

} // namespace tockwise
