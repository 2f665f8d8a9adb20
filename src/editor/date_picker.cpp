#include "editor/date_picker.h"

#include "dates/calendar.h"
#include "dates/civil.h"
#include "editor/clock_face.h"
#include "editor/date_time_field.h"
#include "editor/month_calendar.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include <cmath>

namespace tockwise {
namespace {

constexpr char16_t kHalfStyle[] =
    u"QToolButton { border: 1px solid palette(mid); border-radius: 4px; padding: 3px 8px;"
    u" background: palette(button); color: palette(button-text); }"
    u"QToolButton:focus { border-color: palette(highlight); }"
    u"QToolButton:checked { background: palette(highlight); border-color: palette(highlight);"
    u" color: palette(highlighted-text); }"
    u"QToolButton:checked:focus { border-color: palette(window-text); }";

qint64 wallMinutes(const DateComponents& time) {
  return daysFromCivil({time.year, time.month, time.day}) * 1440 + qint64(time.hour) * 60 +
         time.minute;
}

Date wholeMinute(Date date) {
  // Offsets are whole minutes wherever a reminder can fall due, so that this is the zone's, too.
  return {std::floor(date.seconds / 60) * 60};
}

} // namespace

class DatePicker::Private {
 public:
  explicit Private(DatePicker* picker);

  bool isNever() const { return !(date < kDistantFuture); }
  /// What a change by hand starts from, in whole minutes.
  Date startingDate() const;
  void change(Date changed);
  void show();
  void pick(const DateComponents& wallTime);
  void pickDay(QDate day);
  void pickTime(int hour, int minute);
  void pickHalf(bool afternoon);
  void step(QDateTimeEdit::Section part, int steps);
  void buildGraphical();
  void useLocale();

  DatePicker* picker;
  SystemClock systemClock;
  const Clock* clock = &systemClock;
  Date date;
  std::optional<Date> lastShown; // before "Never"
  QString localeName;
  QLabel* weekday;
  DateTimeField* field;
  QWidget* graphical = nullptr;
  MonthCalendar* calendar = nullptr;
  ClockFace* face = nullptr;
  QToolButton* morning = nullptr;
  QToolButton* afternoon = nullptr;
};

DatePicker::Private::Private(DatePicker* picker) : picker(picker) {
  auto* column = new QVBoxLayout(picker);
  column->setContentsMargins(0, 0, 0, 0);
  auto* row = new QHBoxLayout;
  field = new DateTimeField(picker);
  field->setObjectName(QStringLiteral("dateField"));
  weekday = new QLabel(picker);
  weekday->setObjectName(QStringLiteral("weekdayLabel"));
  weekday->setBuddy(field);
  row->addWidget(weekday);
  row->addWidget(field, 1);
  column->addLayout(row);
  picker->setFocusProxy(field);
  QObject::connect(field, &DateTimeField::typed, picker,
                   [this](const DateComponents& time) { pick(time); });
  QObject::connect(field, &DateTimeField::stepped, picker,
                   [this](QDateTimeEdit::Section part, int steps) { step(part, steps); });
  QObject::connect(field, &DateTimeField::leavesNever, picker, [this] { change(startingDate()); });
}

void DatePicker::Private::buildGraphical() {
  graphical = new QWidget(picker);
  auto* column = new QVBoxLayout(graphical);
  column->setContentsMargins(0, 0, 0, 0);
  calendar = new MonthCalendar(graphical);
  calendar->setObjectName(QStringLiteral("dateCalendar"));
  column->addWidget(calendar);
  auto* row = new QHBoxLayout;
  face = new ClockFace(graphical);
  face->setObjectName(QStringLiteral("clockFace"));
  row->addStretch();
  row->addWidget(face);
  auto* halves = new QVBoxLayout;
  halves->setSpacing(2);
  const auto half = [&](const char* name) {
    auto* button = new QToolButton(graphical);
    button->setObjectName(QLatin1String(name));
    button->setCheckable(true);
    button->setStyleSheet(QString::fromUtf16(kHalfStyle));
    button->setFocusPolicy(Qt::StrongFocus);
    button->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    halves->addWidget(button);
    return button;
  };
  halves->addStretch();
  morning = half("morningButton");
  afternoon = half("afternoonButton");
  halves->addStretch();
  row->addLayout(halves);
  row->addStretch();
  column->addLayout(row);
  picker->layout()->addWidget(graphical);
  QObject::connect(calendar, &MonthCalendar::dayPicked, picker,
                   [this](QDate day) { pickDay(day); });
  QObject::connect(face, &ClockFace::timePicked, picker,
                   [this](int hour, int minute) { pickTime(hour, minute); });
  QObject::connect(morning, &QToolButton::clicked, picker, [this] { pickHalf(false); });
  QObject::connect(afternoon, &QToolButton::clicked, picker, [this] { pickHalf(true); });
  localeName.clear();
}

void DatePicker::Private::useLocale() {
  const QString name = Calendar::current().locale();
  if (name == localeName)
    return;
  localeName = name;
  const QLocale locale(name);
  field->useLocale(locale);
  if (!graphical)
    return;
  calendar->useLocale(locale);
  face->setLocale(locale);
  morning->setText(locale.amText());
  afternoon->setText(locale.pmText());
}

Date DatePicker::Private::startingDate() const {
  if (!isNever())
    return wholeMinute(date);
  const Date now = clock->now();
  return lastShown && *lastShown > now ? wholeMinute(*lastShown) : wholeMinute(now).plusSeconds(60);
}

void DatePicker::Private::change(Date changed) {
  if (changed == date)
    return;
  date = changed;
  if (!isNever())
    lastShown = date;
  show();
  Q_EMIT picker->dateChanged(date);
}

void DatePicker::Private::show() {
  useLocale();
  const Calendar& zone = Calendar::current();
  const DateComponents time = zone.components(startingDate());
  weekday->setText(isNever() ? QString() : zone.dateStringWithFormat(date, u"EEE"));
  if (isNever())
    field->showNever();
  else
    field->showTime(time);
  if (!graphical)
    return;
  const QDate day(time.year, time.month, time.day);
  const DateComponents today = zone.components(clock->now());
  calendar->setToday(QDate(today.year, today.month, today.day));
  if (isNever()) {
    calendar->showNoDay(day);
    face->clearTime();
  } else {
    calendar->showDay(day);
    face->setTime(time.hour, time.minute);
  }
  morning->setChecked(!isNever() && time.hour < 12);
  afternoon->setChecked(!isNever() && time.hour >= 12);
}

void DatePicker::Private::pick(const DateComponents& wallTime) {
  const Calendar& zone = Calendar::current();
  const Date from = startingDate();
  const qint64 minutes = wallMinutes(wallTime) - wallMinutes(zone.components(from));
  // Of an hour that comes twice, stay in the one that is shown.
  const Date near = from.plusSeconds(60.0 * double(minutes));
  const bool stays = wallMinutes(zone.components(near)) == wallMinutes(wallTime);
  if (minutes == 0 && !isNever())
    return;
  change(stays ? near
               : zone.dateWithYear(wallTime.year, wallTime.month, wallTime.day, wallTime.hour,
                                   wallTime.minute, 0));
  show(); // of a time that the clock skips, the one it stands for
}

void DatePicker::Private::pickDay(QDate day) {
  DateComponents time = Calendar::current().components(startingDate());
  time.year = day.year();
  time.month = day.month();
  time.day = day.day();
  pick(time);
}

void DatePicker::Private::pickTime(int hour, int minute) {
  DateComponents time = Calendar::current().components(startingDate());
  time.hour = hour;
  time.minute = minute;
  pick(time);
}

void DatePicker::Private::pickHalf(bool isAfternoon) {
  const DateComponents time = Calendar::current().components(startingDate());
  pickTime(time.hour % 12 + (isAfternoon ? 12 : 0), time.minute);
  show(); // the half that is chosen stays pressed
}

void DatePicker::Private::step(QDateTimeEdit::Section part, int steps) {
  const Calendar& zone = Calendar::current();
  const Date from = startingDate();
  if (isNever())
    return change(from); // there was no part to be seen that would move
  const auto moved = [&](qint64 years, qint64 months, qint64 days, qint64 minutes) {
    change(zone.dateByIncrementingYears(from, years, months, days, 0, minutes, 0));
  };
  switch (part) {
  case QDateTimeEdit::YearSection:
    return moved(steps, 0, 0, 0);
  case QDateTimeEdit::MonthSection:
    return moved(0, steps, 0, 0);
  case QDateTimeEdit::DaySection:
    return moved(0, 0, steps, 0);
  case QDateTimeEdit::HourSection:
    return moved(0, 0, 0, 60 * qint64(steps));
  case QDateTimeEdit::AmPmSection:
    return pickHalf(zone.components(from).hour < 12);
  default:
    return moved(0, 0, 0, steps);
  }
}

DatePicker::DatePicker(QWidget* parent) : QWidget(parent), d(std::make_unique<Private>(this)) {
  d->show();
}

DatePicker::~DatePicker() = default;

void DatePicker::setStyle(Style style) {
  if (style == Style::Graphical && !d->graphical)
    d->buildGraphical();
  if (d->graphical)
    d->graphical->setVisible(style == Style::Graphical);
  d->show();
}

void DatePicker::setClock(const Clock& clock) {
  d->clock = &clock;
  d->show();
}

Date DatePicker::date() const {
  return d->date;
}

void DatePicker::setDate(Date date) {
  d->change(std::isnan(date.seconds) ? kDistantFuture : date);
}

void DatePicker::stepBy(qint64 seconds) {
  d->change(d->date.plusSeconds(double(seconds)));
}

void DatePicker::showEvent(QShowEvent* event) {
  d->show();
  QWidget::showEvent(event);
}

bool DatePicker::event(QEvent* event) {
  // Zone, locale or day may have changed while the window was not used.
  if (event->type() == QEvent::WindowActivate)
    d->show();
  return QWidget::event(event);
}

} // namespace tockwise
