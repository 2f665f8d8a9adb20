#include "editor/month_calendar.h"

#include "colors/color_contrast.h"

#include <QEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QTextCharFormat>
#include <QToolButton>

#include <algorithm>

namespace tockwise {
namespace {

// Flat, in the window's own colours; the navigation's default is a bar of the accent colour.
constexpr char16_t kNavigationStyle[] =
    u"#qt_calendar_navigationbar { background: transparent; }"
    u"QToolButton { background: transparent; border: none; border-radius: 4px; padding: 3px 5px;"
    u" font-weight: 600; color: palette(window-text); }"
    u"QToolButton:hover, QToolButton:focus { background: palette(midlight); }"
    u"QToolButton::menu-indicator { image: none; }";

} // namespace

MonthCalendar::MonthCalendar(QWidget* parent) : QCalendarWidget(parent) {
  setVerticalHeaderFormat(NoVerticalHeader);
  setHorizontalHeaderFormat(ShortDayNames);
  setDateEditEnabled(false); // there is a field for typing
  setAccessibleName(QStringLiteral("Calendar"));
  const auto arrow = [this](const char* name, Qt::ArrowType type, const QString& label) {
    if (auto* button = findChild<QToolButton*>(QLatin1String(name))) {
      button->setArrowType(type);
      button->setAccessibleName(label);
      button->setToolTip(label);
    }
  };
  arrow("qt_calendar_prevmonth", Qt::LeftArrow, QStringLiteral("Previous month"));
  arrow("qt_calendar_nextmonth", Qt::RightArrow, QStringLiteral("Next month"));
  if (auto* bar = findChild<QWidget*>(QStringLiteral("qt_calendar_navigationbar")))
    bar->setStyleSheet(QString::fromUtf16(kNavigationStyle));
  setMinimumHeight(fontMetrics().height() * 13);
  colourTheParts();
  connect(this, &QCalendarWidget::clicked, this, &MonthCalendar::dayPicked);
  connect(this, &QCalendarWidget::selectionChanged, this,
          [this] { Q_EMIT dayPicked(selectedDate()); });
}

void MonthCalendar::useLocale(const QLocale& locale) {
  const QSignalBlocker quiet(this);
  setLocale(locale);
  setFirstDayOfWeek(locale.firstDayOfWeek());
}

void MonthCalendar::showDay(QDate day) {
  turnTo(day, true);
}

void MonthCalendar::showNoDay(QDate day) {
  turnTo(day, false);
}

void MonthCalendar::turnTo(QDate day, bool isChosen) {
  const QSignalBlocker quiet(this);
  m_isChosen = isChosen;
  setSelectedDate(std::clamp(day, minimumDate(), maximumDate()));
  updateCells();
}

void MonthCalendar::setToday(QDate today) {
  if (today == m_today)
    return;
  m_today = today;
  updateCells();
}

void MonthCalendar::colourTheParts() {
  QTextCharFormat header;
  header.setForeground(withOpacity(palette().color(QPalette::Text), 0.6));
  setHeaderTextFormat(header);
  QTextCharFormat plain;
  for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
    setWeekdayTextFormat(day, plain);
}

void MonthCalendar::changeEvent(QEvent* event) {
  QCalendarWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange)
    colourTheParts();
}

void MonthCalendar::paintCell(QPainter* painter, const QRect& rect, QDate date) const {
  const bool isSelected = m_isChosen && date == selectedDate();
  const bool isOfMonth = date.month() == monthShown() && date.year() == yearShown();
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  const QColor accent = palette().color(group, QPalette::Highlight);
  QColor ink = palette().color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
  if (!isOfMonth && !isSelected)
    ink = withOpacity(ink, 0.4);
  painter->save();
  painter->fillRect(rect, palette().color(group, QPalette::Base)); // over the view's selection
  painter->setRenderHint(QPainter::Antialiasing);
  QRectF disc(0, 0, 0, 0);
  const double side = std::min({rect.width(), rect.height(), 40}) - 2;
  disc.setSize(QSizeF(std::min(side * 1.35, rect.width() - 2.0), side));
  disc.moveCenter(QRectF(rect).center());
  if (isSelected || date == m_today) {
    painter->setBrush(isSelected ? QBrush(accent) : QBrush(Qt::NoBrush));
    painter->setPen(date == m_today ? QPen(accent, 1.5) : QPen(Qt::NoPen));
    painter->drawRoundedRect(disc.adjusted(1, 1, -1, -1), 5, 5);
  }
  painter->setPen(ink);
  painter->drawText(rect, Qt::AlignCenter, locale().toString(date.day()));
  painter->restore();
}

} // namespace tockwise
