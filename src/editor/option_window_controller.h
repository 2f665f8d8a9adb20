// The window of a reminder's repeat rule: interval, weekdays and time of day, advance notice.
#pragma once

#include "store/reminder.h"

#include <QDialog>

#include <memory>

namespace tockwise {

/// Main thread. Opens over its parent window and blocks no other; accepted() when OK was pressed,
/// rejected() when the window was closed: the values given stay then.
///
/// Nothing is validated: whatever can be chosen is taken. A stored value that none of the pop-ups
/// offers is added to its pop-up; a stored time that no clock shows is told beside the pickers and
/// kept until the user changes that picker.
class OptionWindowController final : public QDialog {
  Q_OBJECT
 public:
  /// With the values to show, or (without them) as for a reminder that has none.
  explicit OptionWindowController(QWidget* parent);
  OptionWindowController(QWidget* parent, const Interval& reminderInterval,
                         const Extra& reminderExtra, const Offset& reminderOffset);
  ~OptionWindowController() override;

  /// What was given, or from OK on what was chosen.
  Interval reminderInterval() const;
  Extra reminderExtra() const;
  Offset reminderOffset() const;

  /// Sets the interval's pop-ups from the preset at that position; one beyond the sixth changes
  /// nothing.
  void repeatIntervalPopAction(int item);
  /// Takes what is chosen, and closes the window.
  void OK();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
