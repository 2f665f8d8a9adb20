#include "app/offline_password.h"

#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace tockwise {
namespace {

constexpr std::chrono::milliseconds kPatience{1000};

} // namespace

OfflinePassword::OfflinePassword(PreferencesStore& preferences)
    : m_keeping(preferences, m_secrets, nullptr, PasswordKeeping::Waking::Forbidden) {
  m_keeping.start();
  settle();
}

void OfflinePassword::settle() {
  if (!m_keeping.isSettled()) {
    QEventLoop loop;
    QObject::connect(&m_keeping, &PasswordKeeping::settled, &loop, &QEventLoop::quit);
    QTimer::singleShot(kPatience, &loop, &QEventLoop::quit);
    loop.exec();
  }
  m_keeping.keepUnconfirmedHere();
}

} // namespace tockwise
