#include "platform/canberra_sound_player.h"

#include "base/log.h"
#include "platform/canberra_library.h"

#include <QByteArray>
#include <QFile>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

namespace tockwise {

/// Shared by the player and the thread; the thread keeps it alive for as long as it needs it, even
/// when it hangs in a sound server that does not answer and the player is gone.
class CanberraSoundPlayer::Worker {
 public:
  /// Waits at most that long for the thread at the end of the program.
  static constexpr std::chrono::milliseconds kPatience{300};

  static void start(const std::shared_ptr<Worker>& self) {
    if (self->m_started)
      return;
    self->m_started = true;
    std::thread([self] { self->run(); }).detach();
  }

  void add(const QByteArray& path) {
    if (m_sounding.fetch_add(1) >= kMostAtOnce) {
      --m_sounding;
      return;
    }
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(path);
    m_changed.notify_all();
  }

  void stop() {
    std::unique_lock lock(m_mutex);
    m_stopping = true;
    m_changed.notify_all();
    if (m_started)
      m_changed.wait_for(lock, kPatience, [this] { return m_ended; });
  }

  int sounding() const { return m_sounding; }

 private:
  void run() {
    while (const auto path = next()) {
      if (path->isEmpty())
        closeContext();
      else
        playFile(*path);
    }
    closeContext();
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
  }

  /// Waits for the next file to play. An empty name when everything has been played, nothing at
  /// the end.
  std::optional<QByteArray> next() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] {
      return m_stopping || !m_waiting.empty() || (m_context && m_sounding == 0);
    });
    if (m_stopping)
      return std::nullopt;
    if (m_waiting.empty())
      return QByteArray();
    QByteArray path = std::move(m_waiting.front());
    m_waiting.pop_front();
    return path;
  }

  /// The connection is not kept between sounds: it would cost wake-ups and memory, and a sound
  /// server that comes later would not be found. Calls the finish callbacks of what still plays.
  void closeContext() {
    if (m_context)
      Canberra::instance().context_destroy(m_context);
    m_context = nullptr;
  }

  void playFile(const QByteArray& path) {
    const Canberra& canberra = Canberra::instance();
    if (!canberra.library.problem().isEmpty()) {
      end(canberra.library.problem());
      return;
    }
    int error = openContext(canberra);
    ca_proplist* properties = nullptr;
    if (error == CA_SUCCESS)
      error = canberra.proplist_create(&properties);
    if (error == CA_SUCCESS) {
      canberra.proplist_sets(properties, CA_PROP_MEDIA_FILENAME, path.constData());
      canberra.proplist_sets(properties, CA_PROP_MEDIA_ROLE, "event");
      // The user asked for a reminder; a desktop's "no event sounds" is about clicks and logins.
      canberra.proplist_sets(properties, CA_PROP_CANBERRA_ENABLE, "1");
      error =
          canberra.context_play_full(m_context, ++m_lastId, properties, &Worker::finished, this);
      canberra.proplist_destroy(properties);
    }
    if (error != CA_SUCCESS)
      finished(m_context, m_lastId, error, this);
  }

  int openContext(const Canberra& canberra) {
    if (m_context)
      return CA_SUCCESS;
    const int error = canberra.context_create(&m_context);
    if (error != CA_SUCCESS) {
      m_context = nullptr;
      return error;
    }
    return canberra.context_change_props(m_context, CA_PROP_APPLICATION_NAME, "Tockwise",
                                         CA_PROP_APPLICATION_ID, "com.quillstone.Tockwise",
                                         CA_PROP_APPLICATION_ICON_NAME, "com.quillstone.Tockwise",
                                         nullptr);
  }

  /// On a thread of the sound library, or within ca_context_destroy.
  static void finished(ca_context*, uint32_t, int error, void* self) {
    const bool failed =
        error != CA_SUCCESS && error != CA_ERROR_CANCELED && error != CA_ERROR_DESTROYED;
    static_cast<Worker*>(self)->end(
        failed ? QString::fromUtf8(Canberra::instance().text_of_error(error)) : QString());
  }

  /// Of one sound; why it failed, if it did.
  void end(const QString& failure) {
    {
      const std::lock_guard lock(m_mutex);
      --m_sounding;
      m_changed.notify_all();
    }
    if (!failure.isEmpty() && !m_reported.exchange(true))
      logLine(QStringLiteral("Sounds can't be played: %1").arg(failure));
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<QByteArray> m_waiting; // with m_mutex
  bool m_stopping = false;          // with m_mutex
  bool m_ended = false;             // with m_mutex
  bool m_started = false;           // main thread only
  std::atomic<int> m_sounding = 0;
  std::atomic<bool> m_reported = false;
  ca_context* m_context = nullptr; // the worker's thread only
  uint32_t m_lastId = 0;           // the worker's thread only
};

CanberraSoundPlayer::CanberraSoundPlayer() : m_worker(std::make_shared<Worker>()) {}

CanberraSoundPlayer::~CanberraSoundPlayer() {
  m_worker->stop();
}

void CanberraSoundPlayer::play(const QString& path) {
  Worker::start(m_worker);
  m_worker->add(QFile::encodeName(path));
}

int CanberraSoundPlayer::playing() const {
  return m_worker->sounding();
}

} // namespace tockwise
