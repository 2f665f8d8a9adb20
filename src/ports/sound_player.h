// Playing alert sounds.
#pragma once

#include <QString>

namespace tockwise {

class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;
  /// Plays the WAV file at path once and returns at once. Where there is no sound card nothing
  /// is heard, nothing hangs, and the reason is logged once. Main thread.
  virtual void play(const QString& path) = 0;
};

} // namespace tockwise
