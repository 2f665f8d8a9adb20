#include "menu/reminder_texts.h"

#include "store/text_cut.h"

#include <array>
#include <cstdlib>

namespace tockwise {
namespace {

struct Figure {
  qint64 value;
  QStringView unit;
};

/// "3 h, 12 m"
template <size_t Count> QString joined(const std::array<Figure, Count>& figures) {
  QString text;
  text.reserve(80);
  for (const Figure& figure : figures) {
    if (!text.isEmpty())
      text += u", ";
    text += QString::number(figure.value);
    text += u' ';
    text += figure.unit;
  }
  return text;
}

template <typename... Figures> QString phrase(Figures... figures) {
  return joined(std::array<Figure, sizeof...(Figures)>{figures...});
}

/// A missing phrase is shown, not hidden: the line stays where it is.
QString orNull(const std::optional<QString>& text) {
  return text ? *text : QStringLiteral("(null)");
}

/// The countdown, or nothing when less than a second is left.
std::optional<QString> remaining(const DateDifference& left) {
  const Figure years{left.years, u"years"};
  const Figure months{left.months, u"months"};
  const Figure days{left.days, u"days"};
  const Figure hours{left.hours, u"hours"};
  const Figure minutes{left.minutes, u"minutes"};
  const Figure seconds{left.seconds, u"seconds"};
  if (left.years >= 1)
    return phrase(years, months, days, hours, minutes, seconds);
  if (left.months >= 1)
    return phrase(months, days, hours, minutes, seconds);
  if (left.days >= 1)
    return phrase(days, hours, minutes, seconds);
  if (left.hours >= 1)
    return phrase(hours, minutes, seconds);
  if (left.minutes >= 1)
    return phrase(minutes, seconds);
  if (left.seconds >= 1)
    return phrase(seconds);
  return std::nullopt;
}

} // namespace

std::optional<QString> countDownStringFromDate(Date date, Date now, const Calendar& calendar) {
  const DateDifference difference = calendar.differenceSinceDate(date, now);
  const Figure years{std::abs(difference.years), u"y"};
  const Figure months{std::abs(difference.months), u"m"};
  const Figure days{std::abs(difference.days), u"d"};
  const Figure hours{std::abs(difference.hours), u"h"};
  const Figure minutes{std::abs(difference.minutes), u"m"};
  const auto ago = [](const QString& text) { return text + QStringLiteral(" ago"); };
  if (years.value != 0)
    return ago(phrase(years, months, days));
  if (months.value != 0)
    return ago(phrase(months, days, hours));
  if (days.value != 0)
    return ago(phrase(days, hours, minutes));
  if (hours.value != 0)
    return ago(phrase(hours, minutes));
  if (minutes.value != 0)
    return ago(phrase(minutes));
  if (difference.seconds != 0)
    return QStringLiteral("now");
  return std::nullopt;
}

QString indexLine(qsizetype index) {
  return QString::number(index + 1);
}

QString absoluteDateLine(Date fireDate, bool repeating, const Calendar& calendar) {
  const QString date = calendar.dateStringWithFormat(fireDate, kDisplayPattern);
  return repeating ? QStringLiteral("\u2022\u2022 ") + date + QStringLiteral(" \u2022\u2022")
                   : date;
}

bool isExpired(Date fireDate, Date now, const Calendar& calendar) {
  const double left = fireDate.seconds - now.seconds;
  if (left <= 0)
    return true;
  if (left >= 2)
    return false;
  // On the last second the calendar decides, as it does for the text.
  return !remaining(calendar.differenceSinceDate(fireDate, now));
}

bool hasLastLine(Date fireDate, Date lastFired, Date now, const Calendar& calendar) {
  return !isDistantPast(lastFired) && !isExpired(fireDate, now, calendar);
}

QString countdownLine(Date fireDate, Date now, const Calendar& calendar) {
  if (const auto left = remaining(calendar.differenceSinceDate(fireDate, now)))
    return *left;
  return QStringLiteral("Expired: ") + orNull(countDownStringFromDate(fireDate, now, calendar));
}

QString lastLine(Date lastFired, Date now, const Calendar& calendar) {
  return QStringLiteral("Last: ") + orNull(countDownStringFromDate(lastFired, now, calendar));
}

QString plainTitle(const QString& description, Truncation truncation) {
  return truncation == Truncation::On ? cutText(description, kTitleCharacters) : description;
}

QString titleToolTip(Date created, const Calendar& calendar) {
  return QStringLiteral("Created: ") + calendar.dateStringWithFormat(created, kDisplayPattern);
}

QString statusTitle(qsizetype outgoingMailCount, qsizetype openAlerts) {
  if (outgoingMailCount > 0)
    return QString::number(outgoingMailCount);
  return openAlerts > 0 ? QString::number(openAlerts) : QString();
}

} // namespace tockwise
