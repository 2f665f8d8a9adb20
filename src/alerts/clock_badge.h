// The picture of an alert: a clock that shows the time the reminder was due.
#pragma once

#include "base/date.h"

#include <QWidget>

namespace tockwise {

/// Main thread.
class ClockBadge final : public QWidget {
  Q_OBJECT
 public:
  explicit ClockBadge(QWidget* parent = nullptr);
  /// Local time, 0 to 23 and 0 to 59.
  void setTime(int hour, int minute);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int m_hour = 10;
  int m_minute = 8;
};

} // namespace tockwise
