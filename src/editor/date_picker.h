// The date and time of a reminder: typed in a field, or picked on a calendar and a clock face.
#pragma once

#include "base/clock.h"

#include <QWidget>

#include <memory>

namespace tockwise {

/// Main thread. One date, shown everywhere; in the user's time zone and locale, as they are at the
/// time. Giving it the keyboard gives it to the field.
class DatePicker final : public QWidget {
  Q_OBJECT
 public:
  enum class Style { Graphical, Compact }; // with or without calendar and clock face
  explicit DatePicker(QWidget* parent = nullptr);
  ~DatePicker() override;

  /// Compact until it is set.
  void setStyle(Style style);
  /// What tells today and the time to begin with when "Never" is left; must outlive the picker.
  /// The system's until it is set.
  void setClock(const Clock& clock);

  /// The date as it was set, with its seconds and fractions, until the user picks another, which
  /// is a whole minute. The distant future and everything after it read "Never": typing or
  /// picking then goes on from the date shown before, while that is still to come, else from the
  /// next whole minute; a step in the field shows that date.
  Date date() const;
  void setDate(Date date);
  /// Moves the date by exactly that many seconds.
  void stepBy(qint64 seconds);

 Q_SIGNALS:
  /// After every change, whoever made it.
  void dateChanged(tockwise::Date date);

 protected:
  void showEvent(QShowEvent* event) override;
  bool event(QEvent* event) override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
