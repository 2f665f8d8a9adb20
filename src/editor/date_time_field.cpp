#include "editor/date_time_field.h"

#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>

namespace tockwise {
namespace {

constexpr int kFirstYear = 100; // the least that the field can hold
constexpr int kLastYear = 9999;

// The least of all stands for "Never"; times are kept as if in UTC, where each comes once.
QDateTime never() {
  return QDateTime(QDate(kFirstYear, 1, 1), QTime(0, 0), Qt::UTC);
}

QString shortForm(const QLocale& locale) {
  QString form = locale.dateTimeFormat(QLocale::ShortFormat);
  for (const char16_t blank : {u'\u00a0', u'\u202f'})
    form.replace(QChar(blank), QLatin1Char(' ')); // what a keyboard types
  if (!form.contains(QStringLiteral("yyyy")))
    form.replace(QStringLiteral("yy"), QStringLiteral("yyyy"));
  return form;
}

} // namespace

DateTimeField::DateTimeField(QWidget* parent) : QDateTimeEdit(parent) {
  setTimeSpec(Qt::UTC);
  setMinimumDateTime(never());
  setMaximumDateTime(QDateTime(QDate(kLastYear, 12, 31), QTime(23, 59), Qt::UTC));
  setSpecialValueText(QStringLiteral("Never"));
  setAccessibleName(QStringLiteral("Date and time"));
  connect(this, &QDateTimeEdit::dateTimeChanged, this, [this](const QDateTime& value) {
    if (value == never())
      return;
    const QDate date = value.date();
    Q_EMIT typed(
        {date.year(), date.month(), date.day(), value.time().hour(), value.time().minute(), 0, 0});
  });
}

void DateTimeField::useLocale(const QLocale& locale) {
  const QSignalBlocker quiet(this);
  setLocale(locale);
  setDisplayFormat(shortForm(locale));
}

void DateTimeField::showTime(const DateComponents& wallTime) {
  const QDateTime value(
      QDate(std::clamp(wallTime.year, kFirstYear, kLastYear), wallTime.month, wallTime.day),
      QTime(wallTime.hour, wallTime.minute), Qt::UTC);
  showValue(std::max(value, never().addSecs(60)));
}

void DateTimeField::showNever() {
  showValue(never());
}

bool DateTimeField::showsNever() const {
  return dateTime() == never();
}

void DateTimeField::showValue(const QDateTime& value) {
  if (value == dateTime())
    return; // do not disturb what is being typed
  const QSignalBlocker quiet(this);
  setDateTime(value);
}

void DateTimeField::stepBy(int steps) {
  const Section part = currentSection();
  Q_EMIT stepped(part == NoSection ? MinuteSection : part, steps);
  if (hasFocus() && part != NoSection && !showsNever())
    setSelectedSection(part);
}

QAbstractSpinBox::StepEnabled DateTimeField::stepEnabled() const {
  return StepUpEnabled | StepDownEnabled; // the parts carry over, so that there is no end
}

void DateTimeField::keyPressEvent(QKeyEvent* event) {
  const bool types = !event->text().isEmpty() && event->text().front().isLetterOrNumber() &&
                     !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
  if (showsNever() && types) {
    Q_EMIT leavesNever();
    setSelectedSection(sectionAt(0));
  }
  QDateTimeEdit::keyPressEvent(event);
}

} // namespace tockwise
