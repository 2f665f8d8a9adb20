#include "editor/option_text.h"

#include <QStringList>

#include <span>

namespace tockwise {
namespace {

constexpr const char16_t* kIntervalUnits[] = {u"month", u"day", u"hour", u"minute"};
constexpr const char16_t* kWeekdays[] = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};

QString enumerated(const QStringList& parts) {
  if (parts.size() < 2)
    return parts.join(QString());
  return parts.mid(0, parts.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") +
         parts.last();
}

/// "1 day and 5 minutes"; units are those of the last values.
QString amountText(std::span<const qint64> values) {
  const auto units = std::span(kIntervalUnits).last(values.size());
  QStringList parts;
  for (size_t i = 0; i < values.size(); ++i) {
    if (values[i] != 0) {
      parts += QStringLiteral("%1 %2%3").arg(values[i]).arg(
          QString::fromUtf16(units[i]), values[i] == 1 ? QString() : QString(u's'));
    }
  }
  return enumerated(parts);
}

QString repeatText(const Interval& interval) {
  if (interval == kBlankInterval)
    return QStringLiteral("Does not repeat.");
  if (interval == Interval{0, 7, 0, 0})
    return QStringLiteral("Repeats every week.");
  QString amount = amountText(interval);
  // "every day", not "every 1 day"; with more than one unit the number helps.
  if (amount.startsWith(u"1 ") && !amount.contains(u" and "))
    amount.remove(0, 2);
  return QStringLiteral("Repeats every %1.").arg(amount);
}

bool hasWindow(const Extra& extra) {
  return extra.times[0] != extra.times[2] || extra.times[1] != extra.times[3];
}

QString timeText(qint64 hour, qint64 minute) {
  return QStringLiteral("%1:%2").arg(hour, 2, 10, QChar(u'0')).arg(minute, 2, 10, QChar(u'0'));
}

QString weekdayText(const Extra& extra) {
  QStringList allowed;
  for (size_t day = 0; day < extra.days.size(); ++day) {
    if (extra.days[day])
      allowed += QString::fromUtf16(kWeekdays[day]);
  }
  if (size_t(allowed.size()) == extra.days.size())
    return {};
  return QStringLiteral(" on ") + enumerated(allowed);
}

} // namespace

QString reasonNeverToAlert(const Extra& extra) {
  if (extra.days == std::array<bool, 7>{})
    return QStringLiteral("no day of the week is chosen");
  const auto& times = extra.times;
  if (times[0] * 60 + times[1] > times[2] * 60 + times[3])
    return QStringLiteral("the time of day ends (%1) before it begins (%2)")
        .arg(timeText(times[2], times[3]), timeText(times[0], times[1]));
  return {};
}

QString optionText(const Interval& interval, const Extra& extra, const Offset& offset) {
  const QString repeat = repeatText(interval);
  if (const QString reason = reasonNeverToAlert(extra); !reason.isEmpty())
    return repeat + QStringLiteral(" Never alerts: %1.").arg(reason);
  const QString notice = offset == kBlankOffset
                             ? QStringLiteral(" Alerts at its date")
                             : QStringLiteral(" Alerts %1 before its date").arg(amountText(offset));
  QString restriction = weekdayText(extra);
  if (hasWindow(extra)) {
    restriction += QStringLiteral(" between %1 and %2")
                       .arg(timeText(extra.times[0], extra.times[1]),
                            timeText(extra.times[2], extra.times[3]));
  }
  if (!restriction.isEmpty())
    restriction.prepend(QStringLiteral(", only"));
  return repeat + notice + restriction + u'.';
}

} // namespace tockwise
