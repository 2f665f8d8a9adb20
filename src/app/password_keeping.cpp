#include "app/password_keeping.h"

namespace tockwise {

PasswordKeeping::PasswordKeeping(PreferencesStore&, SecretStore&, QObject* parent)
    : QObject(parent) {}

void PasswordKeeping::start() {}

QString PasswordKeeping::hint() const {
  return {};
}

} // namespace tockwise
