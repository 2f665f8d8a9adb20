// The alert sound: which one, and where its file is.
#pragma once

#include "ports/sound_player.h"
#include "store/settings.h"

#include <QStringList>

#include <functional>

namespace tockwise {

inline constexpr char16_t kFallbackSound[] = u"round_pop_click.wav";

/// Main thread.
class AlertSounds {
 public:
  /// A uniform random integer in 0 … count - 1, given count; any number for a count of 0.
  using RandomSource = std::function<qint64(qint64 count)>;

  /// folders: where the program's own sounds are, the first that has a sound wins. The references
  /// must outlive the object.
  AlertSounds(Settings& settings, SoundPlayer& player, QStringList folders, RandomSource random);

  /// The program's own sound folders: beside the program as built or installed
  /// (../share/tockwise/sounds), then those of XDG_DATA_HOME and XDG_DATA_DIRS.
  static QStringList standardFolders();
  /// Where the first of the folders that has a sound of that file name has it, or "".
  static QString pathIn(const QStringList& folders, const QString& name);
  /// The random source of the running program.
  static RandomSource systemRandom();

  /// From now on sounds() is the list of sounds. Called when the preferences are set up; the
  /// folders are read when the list is first needed.
  void buildSoundList();
  /// The file names of the program's sounds, in their order; empty before buildSoundList().
  const QStringList& sounds();

  /// The chosen sound's file name, else the fallback's.
  QString selectedAlertSound() const;
  /// Where the sound of that file name is, else where the fallback is, else "".
  QString pathOfSound(const QString& name) const;
  /// Plays the chosen sound, or a random one when the settings say so; silent when no file is
  /// found. Returns at once.
  void playAlertSound();

 private:
  Settings& m_settings;
  SoundPlayer& m_player;
  QStringList m_folders;
  RandomSource m_random;
  QStringList m_sounds;
  bool m_listWanted = false;
  bool m_listRead = false;
};

} // namespace tockwise
