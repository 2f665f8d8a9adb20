// The days of a month, to pick one from.
#pragma once

#include <QCalendarWidget>

namespace tockwise {

/// Main thread. A calendar in the colours of the theme, weeks beginning as in its locale.
class MonthCalendar final : public QCalendarWidget {
  Q_OBJECT
 public:
  explicit MonthCalendar(QWidget* parent = nullptr);

  void useLocale(const QLocale& locale);
  /// Turns to the day's month and marks the day. Emits nothing.
  void showDay(QDate day);
  /// Turns to the day's month; no day is marked as chosen. Emits nothing.
  void showNoDay(QDate day);
  /// Rings that day.
  void setToday(QDate today);

 Q_SIGNALS:
  /// The user chose a day, by mouse or keyboard; also the one that is shown already.
  void dayPicked(QDate day);

 protected:
  void paintCell(QPainter* painter, const QRect& rect, QDate date) const override;
  void changeEvent(QEvent* event) override;

 private:
  void turnTo(QDate day, bool isChosen);
  void colourTheParts();

  bool m_isChosen = true;
  QDate m_today;
};

} // namespace tockwise
