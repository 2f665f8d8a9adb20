// The window of a reminder's repeat rule: interval, weekdays and time of day, advance notice.
#pragma once

#include "store/reminder.h"

#include <QDialog>

#include <memory>

namespace tockwise {

/// Main thread. Opens over its parent window and does not block others; accepted() when OK was
/// pressed, rejected() when the window was closed: the values given stay then.
class OptionWindowController final : public QDialog {
  Q_OBJECT
 public:
  /// With the values to show, or (without them) as for a reminder that has none.
  explicit OptionWindowController(QWidget* parent);
  OptionWindowController(QWidget* parent, const Interval& reminderInterval,
                         const Extra& reminderExtra, const Offset& reminderOffset);
  ~OptionWindowController() override;

  Interval reminderInterval() const;
  Extra reminderExtra() const;
  Offset reminderOffset() const;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
