// The tick timer against a plain one-second ticker over random histories: the same reminders fire
// in the same order at the same second, and the queues end up equal.
#include "engine/tick_timer.h"
#include "support/fakes.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

constexpr int kSecondsOfHistory = 1500;

/// One machine with one program on it.
struct World {
  explicit World(Date start) : clock(start) {}

  ReminderQueue queue;
  MemorySettings settings;
  FakeClock clock;
  RecordingFiringActions actions;
  Firing firing{queue, settings, clock, actions};
  bool sortsByText = false;
  Tick tick{queue, firing, clock, {[this] { sort(); }, [] {}, [] {}, [] {}, [] { return 0ms; }}};
  std::vector<std::pair<double, QString>> fired; // second, reminder

  void sort() {
    std::vector<quint32> order(size_t(queue.count()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [this](quint32 a, quint32 b) {
      const auto& c = queue.columns();
      return sortsByText ? c.reminderDescriptions.values()[b] < c.reminderDescriptions.values()[a]
                         : c.reminderQueue.values()[a] < c.reminderQueue.values()[b];
    });
    if (!std::is_sorted(order.begin(), order.end()))
      QVERIFY(queue.permute(order));
  }

  void note() {
    for (const AlertRequest& alert : actions.alerts)
      fired.emplace_back(clock.now().seconds, alert.reminder);
    actions.alerts.clear();
  }
};

/// Ticks at every second, sleeps without ticking, waits twenty seconds after waking.
struct PlainProgram {
  explicit PlainProgram(Date start) : world(start) { world.tick.run(); }
  World world;
  bool asleep = false;
  int holdUntil = -1;

  void changed() {}
  void clockChanged() {}
  void sleep() { asleep = true; }
  void wake(int steady) {
    asleep = false;
    world.tick.setWait(true);
    holdUntil = steady + 20;
  }
  void second(int steady) {
    if (!asleep && steady == holdUntil)
      world.tick.setWait(false);
    if (!asleep)
      world.tick.run();
    world.note();
  }
};

struct TimedProgram {
  /// most: of ticks for no reason, a second.
  TimedProgram(Date start, int most) : world(start), mostNoise(most) { timer.start(); }
  World world;
  FakeWakeTimer wakeTimer;
  FakePowerEvents power;
  int steadyNow = 0;
  std::vector<std::pair<int, std::function<void()>>> shots;
  int mostNoise = 0;
  QRandomGenerator noise{5};
  TickTimer timer{world.tick, wakeTimer, power, world.clock,
                  [this](std::chrono::milliseconds span, QObject*, std::function<void()> work) {
                    shots.emplace_back(steadyNow + int(span / 1s), std::move(work));
                  }};

  void changed() { timer.poke(); }
  void clockChanged() { wakeTimer.changeClock(); }
  void sleep() { power.sleep(); }
  void wake(int steady) {
    steadyNow = steady;
    power.wake();
  }
  void second(int steady) {
    steadyNow = steady;
    QCoreApplication::processEvents();
    for (const auto& [when, work] : shots) {
      if (when == steady)
        work();
    }
    if (wakeTimer.armed && *wakeTimer.armed <= world.clock.now())
      wakeTimer.expire();
    // Ticks for other reasons change nothing.
    for (int extra = noise.bounded(mostNoise + 1); extra > 0; --extra) {
      timer.poke();
      QCoreApplication::processEvents();
    }
    world.note();
  }
};

class History {
 public:
  /// In every third one little happens, so that an alarm missed is not made up for by chance.
  explicit History(quint32 seed) : m_dice(seed), m_pace(seed % 3 == 0 ? 10 : 1) {}

  bool happensEvery(int seconds) { return below(seconds * m_pace) == 0; }

  Reminder reminder(Date now) {
    Reminder row;
    row.reminderQueue = now.plusSeconds(below(900) - 100);
    row.reminderUUID = QStringLiteral("U%1").arg(++m_made);
    row.reminderDescriptions = QStringLiteral("%1 %2").arg(below(10)).arg(m_made);
    if (below(3) == 0)
      row.reminderIntervals = {0, below(6) == 0, below(4) == 0, below(5)};
    if (below(3) == 0)
      row.reminderOffsets = {below(3) == 0, below(3) == 0, below(10)};
    // Every other one falls due near now, in zones where no clock changes meanwhile.
    if (below(2)) {
      const auto [days, hours, minutes] = row.reminderOffsets;
      row.reminderQueue =
          row.reminderQueue.plusSeconds(double(days * 86400 + hours * 3600 + minutes * 60));
    }
    if (below(4) == 0)
      row.reminderExtras = extra(now);
    return row;
  }

  Extra extra(Date now) {
    Extra extra;
    for (bool& day : extra.days)
      day = below(3) != 0;
    const DateComponents from = Calendar::current().components(now.plusSeconds(below(600) - 300));
    const DateComponents to = Calendar::current().components(now.plusSeconds(below(900)));
    if (below(2))
      extra.times = {from.hour, from.minute, to.hour, to.minute};
    return extra;
  }

  int below(int bound) { return m_dice.bounded(bound); }

 private:
  QRandomGenerator m_dice;
  int m_pace;
  int m_made = 0;
};

/// What happens in a second, the same in both worlds.
struct Event {
  enum Kind { Add, Edit, Remove, Reset, Jump, Zone, Sleep, Wake, Order, Preference } kind;
  int which = 0;
  double seconds = 0;
  Reminder reminder;
  QByteArray zone;
};

/// One of the reminders, the same one whatever the order of the queue.
qsizetype chosenRow(const ReminderQueue& queue, int which) {
  std::vector<QString> identities = queue->reminderUUID.values();
  if (identities.empty())
    return 0;
  std::sort(identities.begin(), identities.end());
  return *queue.indexOf(identities[size_t(which) % identities.size()]);
}

template <typename Program> void happen(Program& program, const Event& event, int steady) {
  World& world = program.world;
  const qsizetype row = chosenRow(world.queue, event.which);
  switch (event.kind) {
  case Event::Add:
    world.queue.append(event.reminder);
    break;
  case Event::Edit:
    (void)world.queue.replace(row, event.reminder);
    break;
  case Event::Remove:
    (void)world.queue.remove(row);
    break;
  case Event::Reset:
    (void)world.queue.template set<&Columns::reminderRecent>(row, qint64(0));
    break;
  case Event::Jump:
    world.clock.advance(event.seconds);
    program.clockChanged();
    return;
  case Event::Zone:
    qputenv("TZ", event.zone);
    program.clockChanged();
    return;
  case Event::Sleep:
    program.sleep();
    return;
  case Event::Wake:
    world.clock.advance(event.seconds);
    program.wake(steady);
    return;
  case Event::Order:
    world.sortsByText = event.which % 2;
    break;
  case Event::Preference:
    world.settings.setValue(QStringLiteral("sendEmail"), event.which % 2 == 0);
    break;
  }
  program.changed();
}

/// At most one: the timed program acts on some of them at once, the plain one at the second's end.
std::optional<Event> eventOf(History& history, Date now, bool& asleep) {
  std::optional<Event> event;
  const auto add = [&](Event::Kind kind, double seconds = 0) {
    event = Event{kind, history.below(1000), seconds, history.reminder(now), {}};
  };
  if (asleep) {
    if (history.below(30) == 0) {
      add(Event::Wake, history.below(7200));
      asleep = false;
    }
    return event;
  }
  if (history.happensEvery(15))
    add(history.below(3) ? Event::Add : Event::Edit);
  else if (history.happensEvery(60))
    add(history.below(2) ? Event::Remove : Event::Reset);
  else if (history.happensEvery(80))
    add(history.below(2) ? Event::Order : Event::Preference);
  else if (history.below(120) == 0)
    add(Event::Jump, history.below(2) ? history.below(600) - 300 : history.below(200'000) - 90'000);
  else if (history.below(150) == 0) {
    add(Event::Zone);
    static const char* const zones[] = {"America/New_York", "Europe/Berlin", "Asia/Kolkata",
                                        "Australia/Lord_Howe", "Pacific/Apia"};
    event->zone = zones[history.below(5)];
  } else if (history.below(200) == 0) {
    add(Event::Sleep);
    asleep = true;
  }
  return event;
}

} // namespace

class TickTimerPropertyTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void cleanup() { qputenv("TZ", m_zone); }

  /// Ticks by chance would hide a missed alarm.
  void firesWhatAPlainTickerFiresWithoutNoise_data() { firesWhatAPlainTickerFires_data(); }
  void firesWhatAPlainTickerFiresWithoutNoise() { compare(0); }

  void firesWhatAPlainTickerFires_data() {
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<Date>("start");
    const auto at = [](int year, int month, int day, int hour) {
      return Calendar::current().dateWithYear(year, month, day, hour, 50, 0);
    };
    for (quint32 seed = 1; seed <= 40; ++seed) {
      // Nights on which the clocks of one zone or another change, their eves, and other days.
      const Date starts[] = {at(2025, 3, 9, 1),   at(2025, 3, 8, 12),  at(2025, 3, 30, 1),
                             at(2025, 3, 29, 12), at(2025, 4, 6, 1),   at(2025, 4, 5, 12),
                             at(2025, 11, 2, 1),  at(2025, 11, 1, 12), at(2025, 6, 10, 9),
                             at(2025, 12, 31, 23)};
      QTest::addRow("%u", seed) << seed << starts[seed % std::size(starts)];
    }
  }
  void firesWhatAPlainTickerFires() { compare(4); }

 private:
  void compare(int noise) {
    QFETCH(quint32, seed);
    QFETCH(Date, start);
    History history(seed);
    PlainProgram plain(start);
    TimedProgram timed(start, noise);
    bool asleep = false;
    for (int i = 0; i < 25; ++i) {
      const Event event{Event::Add, 0, 0, history.reminder(start), {}};
      happen(plain, event, 0);
      happen(timed, event, 0);
    }
    for (int steady = 1; steady <= kSecondsOfHistory; ++steady) {
      plain.world.clock.advance(1);
      timed.world.clock.advance(1);
      if (const auto event = eventOf(history, plain.world.clock.now(), asleep)) {
        happen(plain, *event, steady);
        happen(timed, *event, steady);
      }
      plain.second(steady);
      timed.second(steady);
      if (plain.world.fired != timed.world.fired)
        break;
    }
    compareFired(plain.world.fired, timed.world.fired);
    // A tick more has sorted what the last second fired; asleep there was one less.
    const bool comparesOrder = noise == 0 && !asleep;
    QVERIFY(rows(timed.world.queue, comparesOrder) == rows(plain.world.queue, comparesOrder));
    QVERIFY(plain.world.fired.size() > 10);
    QVERIFY(noise > 0 || timed.wakeTimer.timesArmed < kSecondsOfHistory);
  }

  static std::vector<Reminder> rows(const ReminderQueue& queue, bool inTheirOrder) {
    std::vector<Reminder> result;
    for (qsizetype i = 0; i < queue.count(); ++i)
      result.push_back(*queue.reminder(i));
    if (!inTheirOrder) {
      std::sort(result.begin(), result.end(), [](const Reminder& left, const Reminder& right) {
        return left.reminderUUID < right.reminderUUID;
      });
    }
    return result;
  }

  using Fired = std::vector<std::pair<double, QString>>;
  static void compareFired(const Fired& plain, const Fired& timed) {
    for (size_t i = 0; i < std::max(plain.size(), timed.size()); ++i) {
      const auto text = [i](const Fired& fired) {
        return i < fired.size()
                   ? QStringLiteral("%1 at %2").arg(fired[i].second).arg(fired[i].first, 0, 'f', 3)
                   : QStringLiteral("nothing");
      };
      QCOMPARE(text(timed), text(plain));
    }
  }

  QByteArray m_zone = qgetenv("TZ");
};

QTEST_GUILESS_MAIN(TickTimerPropertyTest)
#include "tick_timer_property_test.moc"
