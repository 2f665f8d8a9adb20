// Sleep and wake of the machine.
#pragma once

#include <QObject>

namespace tockwise {

/// Main thread. An implementation holds the machine back from sleeping until the receivers of
/// willSleep() have returned (as long as the system allows).
class PowerEvents : public QObject {
  Q_OBJECT
 public:
  using QObject::QObject;
  /// False where nobody tells us of sleep; then neither signal ever comes.
  virtual bool isAvailable() const = 0;

 Q_SIGNALS:
  void willSleep();
  void didWake();
};

} // namespace tockwise
