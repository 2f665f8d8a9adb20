// The forecast against the ticks themselves, over random rules.
#include "engine/fire_forecast.h"
#include "engine/tick.h"
#include "support/fakes.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

constexpr double kDay = 86400.0;

/// One reminder, and the program's ticks.
struct World {
  World(const FireRule& rule, Date now) : clock(now) {
    Reminder reminder;
    reminder.reminderQueue = rule.fireDate;
    reminder.reminderIntervals = rule.interval;
    reminder.reminderExtras = rule.extra;
    reminder.reminderOffsets = rule.offset;
    reminder.reminderUUID = QStringLiteral("U");
    queue.append(reminder);
  }

  ReminderQueue queue;
  MemorySettings settings;
  FakeClock clock;
  RecordingFiringActions actions;
  Firing firing{queue, settings, clock, actions};
  Tick tick{queue, firing, clock, {[] {}, [] {}, [] {}, [] {}, [] { return 0ms; }}};

  bool alertsNow() {
    tick.run();
    return !actions.alerts.empty();
  }

  /// A tick now and at every second after that.
  std::optional<Date> firstAlertTickingEverySecond(Date until) {
    for (; clock.now() < until; clock.advance(1)) {
      if (alertsNow())
        return clock.now();
    }
    return std::nullopt;
  }

  /// A tick whenever there is something to do.
  std::optional<Date> firstAlert(Date until) {
    while (clock.now() < until) {
      if (alertsNow())
        return clock.now();
      const auto next = tick.nextMoment();
      if (!next)
        return std::nullopt;
      clock.set(*next);
    }
    return std::nullopt;
  }
};

class Rules {
 public:
  explicit Rules(quint32 seed) : m_dice(seed) {}

  int below(int bound) { return m_dice.bounded(bound); }

  /// The date lies within reach days of now.
  FireRule rule(Date now, int reach, bool coarse) {
    FireRule rule;
    rule.fireDate = now.plusSeconds(60.0 * below(reach * 1440) - 60.0 * below(reach * 720));
    if (below(10) == 0)
      rule.fireDate = rule.fireDate.plusSeconds(below(1000) / 1000.0);
    if (below(5) != 0)
      rule.interval = coarse ? coarseInterval() : Interval{0, 0, below(3), below(60)};
    if (below(8) != 0)
      rule.extra = extra(rule.fireDate);
    if (below(2))
      rule.offset = {below(3) ? 0 : below(coarse ? 32 : 2), below(25), below(2) ? 0 : below(61)};
    return rule;
  }

 private:
  Interval coarseInterval() {
    switch (below(6)) {
    case 0:
      return {1 + below(12), 0, 0, 0};
    case 1:
      return {0, 7 * (1 + below(4)), 0, 0};
    case 2:
      return {0, 1, 0, 0};
    case 3:
      return {0, 0, 24, 0};
    case 4:
      return {0, 0, 1 + below(24), below(61)};
    default:
      return {below(13), below(32), below(25), below(61)};
    }
  }

  Extra extra(Date fireDate) {
    Extra extra;
    const int rareness = 1 + below(6);
    for (bool& day : extra.days)
      day = below(rareness) == 0;
    const DateComponents from =
        Calendar::current().components(fireDate.plusSeconds(60.0 * (below(600) - 400)));
    const int end = std::min(24 * 60, from.hour * 60 + from.minute + below(below(2) ? 30 : 600));
    if (below(3))
      extra.times = {from.hour, from.minute, end / 60, end % 60};
    return extra;
  }

  QRandomGenerator m_dice;
};

std::vector<Date> starts() {
  const auto at = [](int year, int month, int day, int hour) {
    return Calendar::current().dateWithYear(year, month, day, hour, 50, 0);
  };
  // Before clock changes of one zone or another, and the day that Apia skipped.
  return {at(2025, 3, 8, 12), at(2025, 3, 29, 12),  at(2025, 4, 5, 12),  at(2025, 11, 1, 12),
          at(2025, 6, 10, 9), at(2025, 10, 25, 20), at(2011, 12, 28, 9), at(2025, 9, 28, 1)};
}

QByteArray described(const FireRule& rule, Date now, std::optional<Date> forecast,
                     std::optional<Date> alert) {
  const auto text = [](std::optional<Date> date) {
    return date ? QString::number(date->seconds, 'f', 3) : QStringLiteral("never");
  };
  QString days;
  for (bool day : rule.extra.days)
    days += day ? QLatin1Char('1') : QLatin1Char('0');
  return QStringLiteral("date %1, every %2 %3 %4 %5, days %6, %7:%8 to %9:%10, notice %11 %12 %13, "
                        "now %14: forecast %15, alert %16")
      .arg(text(rule.fireDate))
      .arg(rule.interval[0])
      .arg(rule.interval[1])
      .arg(rule.interval[2])
      .arg(rule.interval[3])
      .arg(days)
      .arg(rule.extra.times[0])
      .arg(rule.extra.times[1])
      .arg(rule.extra.times[2])
      .arg(rule.extra.times[3])
      .arg(rule.offset[0])
      .arg(rule.offset[1])
      .arg(rule.offset[2])
      .arg(text(now), text(forecast), text(alert))
      .toUtf8();
}

} // namespace

class FireForecastPropertyTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aTickerOfEverySecondAlertsAtTheForecastMoment() {
    Rules rules(11);
    int alerts = 0;
    for (int i = 0; i < 60; ++i) {
      const Date now = starts()[size_t(i) % starts().size()].plusSeconds(rules.below(60));
      const FireRule rule = rules.rule(now, 1, i % 4 == 0);
      const Date until = now.plusSeconds(1.5 * kDay);
      const auto forecast = nextFiring(rule, now, Calendar::current());
      const auto alert = World(rule, now).firstAlertTickingEverySecond(until);
      // Between whole seconds it fires with the next tick.
      const auto shown = forecast && *forecast < until
                             ? std::optional(Date{std::ceil(forecast->seconds)})
                             : std::nullopt;
      QVERIFY2(shown == alert, described(rule, now, forecast, alert).constData());
      alerts += alert.has_value();
    }
    QVERIFY(alerts > 20);
  }

  void theProgramAlertsAtTheForecastMoment() {
    Rules rules(12);
    int alerts = 0;
    for (int i = 0; i < 1500; ++i) {
      const bool coarse = i % 5 != 0;
      const Date now = starts()[size_t(i) % starts().size()].plusSeconds(rules.below(86'400));
      const FireRule rule = rules.rule(now, coarse ? 40 : 2, coarse);
      const bool isSlow = rule.interval[0] + rule.interval[1] > 0;
      const Date until = now.plusSeconds((isSlow ? 1000 : 30) * kDay);
      const auto forecast = nextFiring(rule, now, Calendar::current());
      const auto alert = World(rule, now).firstAlert(until);
      const auto shown = forecast && *forecast < until ? forecast : std::nullopt;
      QVERIFY2(shown == alert, described(rule, now, forecast, alert).constData());
      alerts += alert.has_value();
    }
    QVERIFY(alerts > 500);
  }

  // One that goes through its moments one by one without an end runs into the suite's time limit.
  void theSearchEndsForEveryRule() {
    Rules rules(13);
    for (int i = 0; i < 2000; ++i) {
      const FireRule rule = rules.rule(starts()[0], 40, i % 3 != 0);
      const auto forecast = nextFiring(rule, starts()[0], Calendar::current());
      QVERIFY2(!forecast || *forecast >= starts()[0],
               described(rule, starts()[0], forecast, {}).constData());
    }
  }
};

QTEST_GUILESS_MAIN(FireForecastPropertyTest)
#include "fire_forecast_property_test.moc"
