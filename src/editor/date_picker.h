// The date and time of a reminder: typed in a field, or picked on a calendar and a clock face.
#pragma once

#include "base/date.h"

#include <QWidget>

#include <memory>

namespace tockwise {

/// Main thread. One date, shown everywhere; in the user's time zone and locale.
class DatePicker final : public QWidget {
  Q_OBJECT
 public:
  enum class Style { Graphical, Compact }; // with or without calendar and clock face
  explicit DatePicker(QWidget* parent = nullptr);
  ~DatePicker() override;

  /// Compact until it is set.
  void setStyle(Style style);

  /// With its seconds and fractions until the user changes it. The distant future reads
  /// "Never" and is a date that does not come.
  Date date() const;
  void setDate(Date date);
  /// Moves what is shown by that many seconds.
  void stepBy(qint64 seconds);

 Q_SIGNALS:
  void dateChanged(tockwise::Date date);

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
