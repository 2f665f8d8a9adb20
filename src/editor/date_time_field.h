// The field in which a date and time are typed or stepped, part by part.
#pragma once

#include "dates/calendar.h"

#include <QDateTimeEdit>

namespace tockwise {

/// Main thread. Shows a wall-clock time in the user's short form, without seconds, or "Never". It
/// knows no time zone: whoever owns it says what a step or a typed time means.
class DateTimeField final : public QDateTimeEdit {
  Q_OBJECT
 public:
  explicit DateTimeField(QWidget* parent = nullptr);

  /// The form of the locale, with four figures for the year.
  void useLocale(const QLocale& locale);
  /// Emits nothing. A year below 100 is shown as 100, above 9999 as that.
  void showTime(const DateComponents& wallTime);
  /// Emits nothing.
  void showNever();
  bool showsNever() const;

  void stepBy(int steps) override;

 Q_SIGNALS:
  /// The user typed a time (seconds 0).
  void typed(const tockwise::DateComponents& wallTime);
  /// Up, Down, Page Up, Page Down, a button or the wheel: on that part of the time. Nothing has
  /// changed yet.
  void stepped(QDateTimeEdit::Section part, int steps);
  /// The user starts to type where "Never" stands; show a time now to be typed over.
  void leavesNever();

 protected:
  StepEnabled stepEnabled() const override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showValue(const QDateTime& value);
};

} // namespace tockwise
