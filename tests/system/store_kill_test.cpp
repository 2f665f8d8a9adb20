// A process saves state after state and is killed at random moments; after each kill the store
// opens undamaged and holds a state that was saved whole.
#include "store/reminder_store.h"
#include "support/test_environment.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>

using namespace tockwise;

namespace {

constexpr int kKills = 300;
constexpr int kReminders = 200;

std::unique_ptr<ReminderStore> open(const Clock& clock) {
  auto store = ReminderStore::open(PreferencesStore::Paths::ofUser(), clock);
  return store ? std::move(*store) : nullptr;
}

// State n: every reminder's text, and a setting, say n.
void fill(ReminderStore& store, int n) {
  Columns columns;
  for (int i = 0; i < kReminders; ++i) {
    ReminderQueue::valuesOf(columns.reminderQueue).push_back(Date{double(n) + i});
    ReminderQueue::valuesOf(columns.reminderDescriptions).push_back(QString::number(n));
  }
  store.queue().setColumns(std::move(columns));
  store.queue().syncArrays({Date{double(n)}, false, false});
  store.preferences().setValue(QStringLiteral("email"), QString::number(n));
}

// Announces each state that is on the disk.
[[noreturn]] void saveUntilKilled(int announce, int first) {
  const FakeClock clock(Date::fromUnixSeconds(1741079742));
  const auto store = open(clock);
  for (int n = first; store; ++n) {
    fill(*store, n);
    store->saveDefaults();
    if (::write(announce, &n, sizeof n) != ssize_t(sizeof n))
      break;
  }
  ::_exit(1);
}

// The last state announced before the pipe's end.
int lastAnnounced(int pipe, int before) {
  int last = before;
  int n = 0;
  while (::read(pipe, &n, sizeof n) == ssize_t(sizeof n))
    last = n;
  return last;
}

} // namespace

class StoreKillTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aKilledWriterLeavesAWholeState() {
    const TestEnvironment environment;
    const FakeClock clock(Date::fromUnixSeconds(1741079742));
    QRandomGenerator random(300);
    int saved = 0;
    int midSave = 0;
    for (int kill = 0; kill < kKills; ++kill) {
      int pipe[2];
      QCOMPARE(::pipe(pipe), 0);
      const pid_t child = ::fork();
      if (child == 0) {
        ::close(pipe[0]);
        saveUntilKilled(pipe[1], saved + 1);
      }
      ::close(pipe[1]);
      int first = 0;
      QCOMPARE(::read(pipe[0], &first, sizeof first), ssize_t(sizeof first));
      // Somewhere within the saves that follow: this is not waiting for something to happen.
      const timespec moment{0, long(random.bounded(8'000'000))};
      ::nanosleep(&moment, nullptr);
      ::kill(child, SIGKILL);
      const int announced = lastAnnounced(pipe[0], first);
      ::close(pipe[0]);
      QCOMPARE(::waitpid(child, nullptr, 0), child);

      const auto store = open(clock);
      QVERIFY(store != nullptr);
      QVERIFY(store->loadReport().isEmpty());
      QCOMPARE(store->loadReport().foreignElements, 0);
      const int held = store->preferences().string(QStringLiteral("email")).toInt();
      QVERIFY2(held == announced || held == announced + 1,
               qPrintable(QStringLiteral("%1 held, %2 announced").arg(held).arg(announced)));
      QCOMPARE(store->queue()->reminderDescriptions.values(),
               std::vector<QString>(size_t(kReminders), QString::number(held)));
      QCOMPARE(store->queue()->reminderQueue.values().back(), Date{double(held) + kReminders - 1});
      midSave += QFile::exists(PreferencesStore::Paths::ofUser().file + QStringLiteral(".writing"));
      saved = held;
    }
    QVERIFY2(midSave > 0, "no kill fell into a save");
  }
};

QTEST_GUILESS_MAIN(StoreKillTest)
#include "store_kill_test.moc"
