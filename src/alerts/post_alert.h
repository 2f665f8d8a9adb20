// The one user notification that the program posts.
#pragma once

#include "base/clock.h"
#include "ports/notification_centre.h"

#include <QObject>

namespace tockwise {

/// Main thread.
class PostAlert final : public QObject {
  Q_OBJECT
 public:
  /// The references must outlive the object. A notification that is clicked is removed.
  PostAlert(NotificationCentre& centre, const Clock& clock, QObject* parent = nullptr);

  /// Schedules a notification with that text, a second from now, with the default sound.
  void postAlert(const QString& text);

 private:
  NotificationCentre& m_centre;
  const Clock& m_clock;
};

} // namespace tockwise
