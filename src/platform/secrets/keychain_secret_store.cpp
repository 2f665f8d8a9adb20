#include "platform/secrets/keychain_secret_store.h"

#include "platform/secrets/secret_probe.h"

#include <QLibrary>
#include <QTimer>
#include <qt6keychain/keychain.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace tockwise {
namespace {

using namespace std::chrono_literals;

const QString kService = QStringLiteral("com.quillstone.Tockwise");

// An unlocked store answers within milliseconds; a locked one asks the user.
constexpr std::chrono::milliseconds kPatience = 5s;
constexpr std::chrono::milliseconds kPatienceWithUser = 120s;

bool isPlasma() {
  return qgetenv("XDG_CURRENT_DESKTOP") == "KDE" || qEnvironmentVariableIsSet("KDE_FULL_SESSION");
}

// libsecret, which QtKeychain loads, keeps its connection with a service also when that has ended:
// everything would fail with the next one.
void forgetService() {
  if (const auto disconnect =
          QLibrary::resolve(QStringLiteral("secret-1"), 0, "secret_service_disconnect"))
    disconnect();
}

} // namespace

// An answer that is given once: as a failure when nobody gave it before it went.
class KeychainSecretStore::Answer {
 public:
  explicit Answer(std::function<void(Outcome)> function) : m_function(std::move(function)) {}
  ~Answer() { give(Outcome::Failed); }
  Q_DISABLE_COPY_MOVE(Answer)
  void give(Outcome outcome) {
    if (const auto function = std::exchange(m_function, nullptr))
      function(outcome);
  }

 private:
  std::function<void(Outcome)> m_function;
};

KeychainSecretStore::KeychainSecretStore(QObject* parent) : SecretStore(parent) {
  if (isPlasma()) {
    const int version = qEnvironmentVariableIntValue("KDE_SESSION_VERSION");
    m_probes.push_back(new WalletProbe(version > 5 ? version : 5, this));
  }
  m_probes.push_back(new SecretServiceProbe(this));
  for (SecretProbe* probe : m_probes) {
    connect(probe, &SecretProbe::maybeChanged, this, [this] { look({}); });
    connect(probe, &SecretProbe::ownerChanged, this, [this] {
      if (m_used)
        forgetService();
    });
  }
}

KeychainSecretStore::~KeychainSecretStore() = default;

void KeychainSecretStore::look(std::function<void()> done) {
  look(Waking::No, std::move(done));
}

void KeychainSecretStore::wake(std::function<void()> done) {
  look(Waking::Yes, std::move(done));
}

void KeychainSecretStore::look(Waking waking, std::function<void()> done) {
  if (done)
    m_waiting.push_back(std::move(done));
  if (std::exchange(m_looking, true))
    m_again = std::max(waking, m_again.value_or(Waking::No));
  else
    lookAt(0, waking);
}

void KeychainSecretStore::lookAt(std::size_t probe, Waking waking) {
  const auto next = [this, probe, waking](State state) {
    if (state == State::NotAvailable && probe + 1 < m_probes.size())
      lookAt(probe + 1, waking);
    else
      found(state);
  };
  if (waking == Waking::Yes)
    m_probes[probe]->wake(next);
  else
    m_probes[probe]->look(next);
}

void KeychainSecretStore::found(State state) {
  m_looking = false;
  if (const auto again = std::exchange(m_again, std::nullopt)) {
    look(*again, {});
    return;
  }
  if (std::exchange(m_state, state) != state)
    Q_EMIT stateChanged();
  for (const auto& done : std::exchange(m_waiting, {}))
    done();
}

void KeychainSecretStore::run(QKeychain::Job* job, const QString& key,
                              std::function<void(Outcome)> answer) {
  const auto given = std::make_shared<Answer>(std::move(answer));
  job->setKey(key);
  job->setInsecureFallback(false);
  auto* patience = new QTimer(this);
  patience->setSingleShot(true);
  connect(patience, &QTimer::timeout, patience, [patience, given] {
    patience->deleteLater();
    given->give(Outcome::Failed);
  });
  connect(job, &QKeychain::Job::finished, patience, [this, patience, given](QKeychain::Job* ended) {
    patience->deleteLater();
    if (ended->error() == QKeychain::NoError) {
      given->give(Outcome::Done);
      return;
    }
    // A store that is locked, or just went, may say that there is no such secret.
    const bool notFound = ended->error() == QKeychain::EntryNotFound;
    look([this, given, notFound] {
      given->give(notFound && m_state == State::Available ? Outcome::NotFound : Outcome::Failed);
    });
  });
  m_used = true;
  patience->start(m_state == State::Available ? kPatience : kPatienceWithUser);
  job->start();
}

void KeychainSecretStore::read(const QString& key,
                               std::function<void(bool, std::optional<QString>)> answer) {
  auto* job = new QKeychain::ReadPasswordJob(kService);
  run(job, key, [job, answer = std::move(answer)](Outcome outcome) {
    answer(outcome != Outcome::Failed,
           outcome == Outcome::Done ? std::optional(job->textData()) : std::nullopt);
  });
}

void KeychainSecretStore::write(const QString& key, const QString& secret,
                                std::function<void(bool)> answer) {
  auto* job = new QKeychain::WritePasswordJob(kService);
  job->setTextData(secret);
  run(job, key,
      [answer = std::move(answer)](Outcome outcome) { answer(outcome == Outcome::Done); });
}

void KeychainSecretStore::remove(const QString& key, std::function<void(bool)> answer) {
  auto* job = new QKeychain::DeletePasswordJob(kService);
  run(job, key,
      [answer = std::move(answer)](Outcome outcome) { answer(outcome != Outcome::Failed); });
}

} // namespace tockwise
