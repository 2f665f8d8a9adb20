#include "platform/termination_signals.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <memory>

namespace tockwise {
namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler can reach nothing else.
std::atomic<int> wakeEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void wake(int) {
  const int before = errno;
  const char byte = 0;
  [[maybe_unused]] const auto written = ::write(wakeEnd, &byte, 1); // a full pipe wakes as well
  errno = before;
}

} // namespace

class TerminationSignals::Private {
 public:
  explicit Private(TerminationSignals& owner) {
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
      return;
    wakeEnd = ends[1];
    notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, &owner, [this, &owner] {
      std::array<char, 16> bytes;
      while (::read(ends[0], bytes.data(), bytes.size()) > 0) {
      }
      Q_EMIT owner.received();
    });
    struct sigaction action = {};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < kSignals.size(); ++i)
      replaceUnlessIgnored(kSignals[i], action, before[i]);
  }

  ~Private() {
    if (!notifier)
      return;
    for (size_t i = 0; i < kSignals.size(); ++i)
      ::sigaction(kSignals[i], &before[i], nullptr);
    wakeEnd = -1;
    notifier.reset();
    ::close(ends[0]);
    ::close(ends[1]);
  }

  Private(const Private&) = delete;
  Private& operator=(const Private&) = delete;

 private:
  /// What is ignored (by nohup, in the background of a shell) stays so.
  static void replaceUnlessIgnored(int number, const struct sigaction& action,
                                   struct sigaction& before) {
    ::sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN)
      ::sigaction(number, &action, nullptr);
  }

  std::array<int, 2> ends{-1, -1};
  std::array<struct sigaction, kSignals.size()> before{};
  std::unique_ptr<QSocketNotifier> notifier;
};

TerminationSignals::TerminationSignals() : d(std::make_unique<Private>(*this)) {
  QCoreApplication::instance()->installEventFilter(this);
}

TerminationSignals::~TerminationSignals() = default;

bool TerminationSignals::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
    return QObject::eventFilter(watched, event);
  Q_EMIT received();
  return true;
}

} // namespace tockwise
