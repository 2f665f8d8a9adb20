// The one timer that wakes the program: an alarm at an instant of the wall clock.
#pragma once

#include "base/date.h"

#include <QObject>

namespace tockwise {

/// Main thread.
class WakeTimer : public QObject {
  Q_OBJECT
 public:
  using QObject::QObject;
  /// Emits expired() once, at that instant of the wall clock (at once when it has passed),
  /// replacing an earlier alarm.
  virtual void arm(Date when) = 0;
  virtual void disarm() = 0;

 Q_SIGNALS:
  void expired();
  /// The wall clock was set or the time zone changed. The alarm is kept.
  void clockChanged();
};

} // namespace tockwise
