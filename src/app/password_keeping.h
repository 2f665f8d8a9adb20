// Where the mail server's password is: in the desktop's secret store where there is one, else in
// the preferences store. Whoever reads the setting passwordAD need not know.
#pragma once

#include "ports/secret_store.h"
#include "store/preferences_store.h"

#include <QObject>

namespace tockwise {

/// Main thread. The references must outlive it.
class PasswordKeeping final : public QObject {
  Q_OBJECT
 public:
  PasswordKeeping(PreferencesStore& preferences, SecretStore& secrets, QObject* parent = nullptr);

  /// Fetches the password, or takes one that stands in the preferences store into the secret store.
  void start();
  /// Where the password is kept, in one sentence for the user; "" while that is not known.
  QString hint() const;

 Q_SIGNALS:
  /// The password was fetched, or where it is kept has changed.
  void changed();
};

} // namespace tockwise
