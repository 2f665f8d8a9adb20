// The pane of what happens when a reminder fires.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

namespace Ui {
class AlertsPane;
}

namespace tockwise {

/// Main thread. The sound is written when it is chosen.
class AlertsPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit AlertsPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~AlertsPane() override;

 private:
  void showState() override;
  /// The user chose a sound: plays it once, and stores it.
  void reminderSoundPopUpAction(int index);
  void play(const QString& sound);

  SoundPlayer& m_player;
  QStringList m_sounds;
  std::function<QString(const QString& name)> m_pathOfSound;
  std::unique_ptr<Ui::AlertsPane> m_ui;
};

} // namespace tockwise
