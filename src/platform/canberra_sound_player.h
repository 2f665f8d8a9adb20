// Alert sounds through libcanberra (PulseAudio, PipeWire, ALSA).
#pragma once

#include "ports/sound_player.h"

#include <memory>

namespace tockwise {

/// Main thread. The sound system is reached on a thread of its own, started with the first sound:
/// starting the program costs nothing, and a sound server that does not answer holds up nothing.
/// The connection to it is closed when all sounds have ended.
/// At most kMostAtOnce sounds play at once; more are left out, since nobody could tell them apart.
/// Destruction ends what is playing.
class CanberraSoundPlayer final : public SoundPlayer {
 public:
  static constexpr int kMostAtOnce = 8;

  CanberraSoundPlayer();
  ~CanberraSoundPlayer() override;
  CanberraSoundPlayer(const CanberraSoundPlayer&) = delete;
  CanberraSoundPlayer& operator=(const CanberraSoundPlayer&) = delete;

  void play(const QString& path) override;

  /// Sounds that are waiting or playing now. Any thread.
  int playing() const;

 private:
  class Worker;
  std::shared_ptr<Worker> m_worker;
};

} // namespace tockwise
