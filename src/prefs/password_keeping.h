// Where the mail server's password is: in the desktop's secret store where there is one, else in
// the preferences store. Whoever reads the setting passwordAD need not know.
//
// Nothing is lost on the way: a password leaves the file only when the secret store has given it
// back once, and one that is set while the secret store is open goes there without touching the
// disk, or into the file when it is not taken. docs/decisions/0014 has the reasons.
#pragma once

#include "ports/secret_store.h"
#include "store/preferences_store.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

namespace tockwise {

/// Main thread. The references must outlive it; it is the one listener to onValueSet of the
/// preferences.
class PasswordKeeping final : public QObject {
  Q_OBJECT
 public:
  /// Whether a secret store that does not run may be started.
  enum class Waking { Allowed, Forbidden };

  PasswordKeeping(PreferencesStore& preferences, SecretStore& secrets, QObject* parent = nullptr,
                  Waking waking = Waking::Allowed);
  /// What the secret store did not take by now is written to the file.
  ~PasswordKeeping() override;

  /// Fetches the password, or takes one that stands in the preferences store into the secret store,
  /// as far as that needs neither starting it nor asking the user.
  void start();
  /// The password is about to be shown or used: may start the secret store and ask to unlock it.
  void fetch();
  /// Another process changed the preferences.
  void othersChanged() { proceed(); }
  /// Whether nothing is under way that ends by itself; the user may be asked to unlock the store.
  bool isSettled() const { return (m_work == Work::None || m_asksUser) && !m_looking; }
  /// Calls done once it is settled, at once if that is so already; not when context is gone.
  void whenSettled(const QObject* context, std::function<void()> done);
  /// Gives the secret store no more time: what it did not take by now is written to the file.
  void keepUnconfirmedHere();
  /// Where the password is kept, in one sentence for the user; "" while that is not known.
  QString hint() const;
  /// How long a secret store may be away before a password that is known goes into the file.
  void setGrace(std::chrono::milliseconds grace) { m_gone.setInterval(grace); }

 Q_SIGNALS:
  /// The password was fetched, or where it is kept has changed.
  void changed();
  /// From now on it is.
  void settled();

 private:
  enum class Work { None, Reading, Writing, Removing };

  QString password() const;
  bool isElsewhere() const;
  void passwordSet();
  void stateChanged();
  void looked();
  void askForIt();
  void proceed();
  void read();
  void tookOut(bool ok, const std::optional<QString>& secret);
  void write();
  void written(const QString& secret, bool ok);
  void remove();
  void refused();
  void moveHere();
  void finish();

  PreferencesStore& m_preferences;
  SecretStore& m_secrets;
  Waking m_waking;
  QTimer m_gone; // runs while the secret store is away
  Work m_work = Work::None;
  bool m_asksUser = false; // reading waits for the user
  bool m_looking = false;
  bool m_wanted = false;      // by whoever fetches it, when looking is done
  bool m_inFile;              // the file holds a password
  bool m_unconfirmed = false; // the one in memory is neither in the file nor surely kept elsewhere
  bool m_stale = false;       // the secret store may have one that is none any more
  bool m_refused = false;     // the secret store did not take it; not tried again for now
  bool m_unreadable = false;  // nor gave it
  bool m_missing = false;     // it has none, though it should
};

} // namespace tockwise
