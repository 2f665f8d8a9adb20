#include "engine/fire_forecast.h"

#include "engine/repeat_rules.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace tockwise {
namespace {

// What a forecast may cost: moments at which the extra rule is asked, and moves of the fire date.
constexpr int kMostRefusals = 5'000;
constexpr int kMostMoves = 100'000;

bool dateComes(Date fireDate) {
  return fireDate < kDistantFuture; // false for what is no number
}

/// Goes from one occurrence of a reminder to the next as ticks and firing do, and leaves out those
/// of which it is known that the extra rule refuses them.
class Occurrences {
 public:
  Occurrences(const FireRule& rule, Date now, const Calendar& calendar)
      : m_rule(rule), m_earliest(now), m_calendar(calendar) {}

  /// The next alert; nothing when there is none. Once only for a rule that does not repeat.
  std::optional<Date> nextAlert() {
    for (int refusals = 0; refusals < kMostRefusals && goesOn(); ++refusals) {
      const Date moment = nextTry();
      const bool repeats = isRepeatingReminder(m_rule.interval);
      if (m_rule.extra == kBlankExtra || checkExtra(m_rule.extra, moment, m_calendar)) {
        if (repeats)
          fireAt(moment);
        return moment;
      }
      const auto opens = nextMomentAllowed(m_rule.extra, moment, m_calendar);
      if (!opens || !repeats)
        return opens; // what does not repeat is tried until it is allowed
      fireAt(moment);
      leaveOutUntil(opens->plusSeconds(-1));
    }
    return std::nullopt;
  }

 private:
  bool goesOn() const { return m_moves < kMostMoves && dateComes(m_rule.fireDate); }
  Date dueDate() const { return alertDate(m_rule.fireDate, m_rule.offset, m_calendar); }
  Date nextTry() const { return std::max(m_earliest, dueDate()); }

  void fireAt(Date moment) {
    ++m_moves;
    m_rule.fireDate = nextFireDate(m_rule.fireDate, m_rule.interval, moment, m_calendar);
    // Still due: an offset longer than the interval. It is fired again with the next second.
    m_earliest = dueDate() <= moment ? Date{std::floor(moment.seconds) + 1} : moment;
  }

  /// Moves on to the first try later than refused; every one until then is in vain.
  void leaveOutUntil(Date refused) {
    if (!(nextFireDate(m_rule.fireDate, m_rule.interval, refused, m_calendar) > m_rule.fireDate)) {
      m_earliest = std::max(m_earliest, refused.plusSeconds(1)); // it stands: tried every second
      return;
    }
    const Date surelyDue = fireDateSurelyDueBy(refused);
    for (Date moment = nextTry(); moment <= refused && goesOn(); moment = nextTry()) {
      const bool isOverdue = dueDate() < m_earliest;
      if (isOverdue || !(m_rule.fireDate < surelyDue)) {
        fireAt(moment);
        continue;
      }
      ++m_moves; // each of these tries moves the date by one step
      m_rule.fireDate = nextFireDate(m_rule.fireDate, m_rule.interval, surelyDue, m_calendar);
    }
  }

  /// A fire date earlier than this falls due no later than moment.
  Date fireDateSurelyDueBy(Date moment) const {
    constexpr double kDay = 86400.0;
    const auto [days, hours, minutes] = m_rule.offset;
    const Date plain =
        moment.plusSeconds(kDay * double(days) + 3600.0 * double(hours) + 60.0 * double(minutes));
    if (days == 0 ||
        m_calendar.offsetHoldsUntil(moment.plusSeconds(-2 * kDay)) > plain.plusSeconds(2 * kDay))
      return plain;
    return plain.plusSeconds(-2 * kDay); // no clock change is longer
  }

  FireRule m_rule;
  Date m_earliest; // no try before
  const Calendar& m_calendar;
  int m_moves = 0;
};

QString counted(qint64 count, QStringView unit) {
  return QStringLiteral("%1 %2%3").arg(count).arg(unit,
                                                  count == 1 ? QString() : QStringLiteral("s"));
}

/// "a", "a and b", "a, b and c"
QString listed(const QStringList& parts) {
  if (parts.size() < 2)
    return parts.join(QString());
  return parts.mid(0, parts.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") +
         parts.last();
}

/// "1 day, 2 hours and 5 minutes": the figures that are not 0.
template <size_t Count>
QString amountText(const std::array<qint64, Count>& figures,
                   const std::array<QStringView, Count>& units) {
  QStringList parts;
  for (size_t i = 0; i < Count; ++i) {
    if (figures[i] != 0)
      parts += counted(figures[i], units[i]);
  }
  return listed(parts);
}

QString daysText(const std::array<bool, 7>& days) {
  if (days == std::array{true, true, true, true, true, true, true})
    return {};
  if (days == std::array{false, true, true, true, true, true, false})
    return QStringLiteral("on weekdays");
  static constexpr std::array<QStringView, 7> kNames{u"Sun", u"Mon", u"Tue", u"Wed",
                                                     u"Thu", u"Fri", u"Sat"};
  QStringList allowed;
  for (size_t i = 1; i <= kNames.size(); ++i) { // Sunday last: "Sat and Sun"
    if (days[i % kNames.size()])
      allowed += kNames[i % kNames.size()].toString();
  }
  return allowed.isEmpty() ? QStringLiteral("on no weekday")
                           : QStringLiteral("on ") + listed(allowed);
}

bool hasWindow(const Extra& extra) {
  return extra.times[0] != extra.times[2] || extra.times[1] != extra.times[3];
}

QString windowText(const Extra& extra) {
  if (!hasWindow(extra))
    return {};
  const auto time = [&](size_t hour) {
    return QStringLiteral("%1:%2")
        .arg(extra.times[hour], 2, 10, QLatin1Char('0'))
        .arg(extra.times[hour + 1], 2, 10, QLatin1Char('0'));
  };
  return QStringLiteral("between %1 and %2").arg(time(0), time(2));
}

QString joined(QStringList parts, const QString& separator) {
  parts.removeAll(QString());
  return parts.join(separator);
}

/// Why there is no (further) alert.
QString whyNever(const FireRule& rule) {
  if (!dateComes(rule.fireDate))
    return QStringLiteral("its date does not come");
  const QString reason = reasonNeverToAlert(rule.extra);
  return reason.isEmpty() ? QStringLiteral("it never falls into the allowed times") : reason;
}

QString firstAlertText(const FireRule& rule, Date alert, Date now, const Calendar& calendar) {
  if (alert > now)
    return calendar.dateStringWithFormat(alert, kDisplayPattern);
  if (isRepeatingReminder(rule.interval))
    return QStringLiteral("at once");
  if (rule.fireDate <= now)
    return QStringLiteral("at once: its date has passed");
  const auto [days, hours, minutes] = rule.offset;
  return QStringLiteral("at once: less than %1 remain")
      .arg(amountText<3>({days, hours, minutes}, {u"day", u"hour", u"minute"}));
}

} // namespace

std::optional<Date> nextFiring(const FireRule& rule, Date now, const Calendar& calendar) {
  return Occurrences(rule, now, calendar).nextAlert();
}

QString firesText(const FireRule& rule, Date now, const Calendar& calendar) {
  Occurrences occurrences(rule, now, calendar);
  const auto alert = occurrences.nextAlert();
  if (!alert)
    return QStringLiteral("Never fires: ") + whyNever(rule);
  QStringList parts{QStringLiteral("Fires ") + firstAlertText(rule, *alert, now, calendar)};
  if (!isRepeatingReminder(rule.interval)) {
    if (*alert > now && *alert == alertDate(rule.fireDate, rule.offset, calendar))
      parts += offsetText(rule.offset);
  } else if (occurrences.nextAlert()) {
    parts += joined({QStringLiteral("then"), intervalText(rule.interval), extraText(rule.extra)},
                    QStringLiteral(" "));
    parts += offsetText(rule.offset);
  } else {
    parts += QStringLiteral("then never again");
  }
  return joined(parts, QStringLiteral(", "));
}

QString intervalText(const Interval& interval) {
  if (!isRepeatingReminder(interval))
    return {};
  const qint64 days = interval[1];
  QString amount;
  if (days != 0 && days % 7 == 0 && interval == Interval{0, days, 0, 0})
    amount = counted(days / 7, u"week");
  else
    amount = amountText<4>(interval, {u"month", u"day", u"hour", u"minute"});
  const bool isOneUnit =
      amount.startsWith(QStringLiteral("1 ")) && amount.count(QLatin1Char(' ')) == 1;
  return QStringLiteral("every ") + (isOneUnit ? amount.mid(2) : amount);
}

QString extraText(const Extra& extra) {
  return joined({daysText(extra.days), windowText(extra)}, QStringLiteral(" "));
}

QString offsetText(const Offset& offset) {
  const QString amount = amountText<3>(offset, {u"day", u"hour", u"minute"});
  return amount.isEmpty() ? QString() : amount + QStringLiteral(" before");
}

QString reasonNeverToAlert(const Extra& extra) {
  const auto& [startHour, startMinute, endHour, endMinute] = extra.times;
  if (std::none_of(extra.days.begin(), extra.days.end(), [](bool day) { return day; }))
    return QStringLiteral("no weekday is allowed");
  if (std::pair(endHour, endMinute) < std::pair(startHour, startMinute))
    return QStringLiteral("the time of day ends before it begins");
  return {};
}

} // namespace tockwise
