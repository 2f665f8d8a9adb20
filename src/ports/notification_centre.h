// User notifications of the desktop.
#pragma once

#include "base/date.h"

#include <QObject>
#include <QString>

namespace tockwise {

struct UserNotification {
  QString title;
  QString informativeText; // plain text
  Date deliveryDate;       // shown then; at once when it has passed
  bool defaultSound = false;
};

/// Main thread.
class NotificationCentre : public QObject {
  Q_OBJECT
 public:
  using QObject::QObject;
  /// False where no service shows notifications (looked up without starting one).
  virtual bool isAvailable() const = 0;
  /// Shows it at its time; the number by which didActivate() and removeDelivered() know it. What
  /// can't be shown is logged once.
  virtual quint64 schedule(const UserNotification& notification) = 0;
  /// Takes it off the desktop's list of notifications; a number that is not there is ignored.
  virtual void removeDelivered(quint64 number) = 0;

 Q_SIGNALS:
  /// The user clicked it.
  void didActivate(quint64 number);
};

} // namespace tockwise
