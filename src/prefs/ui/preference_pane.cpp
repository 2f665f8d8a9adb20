#include "prefs/ui/preference_pane.h"

namespace tockwise {

PreferencePane::PreferencePane(Settings& settings, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_controls(settings) {
  connect(&m_controls, &SettingControls::edited, this, [this] {
    showState();
    Q_EMIT edited();
  });
  connect(&m_controls, &SettingControls::written, this, [this] {
    showState();
    Q_EMIT settingsWritten();
  });
}

void PreferencePane::fill() {
  m_controls.fill();
  showState();
}

void PreferencePane::follow() {
  m_controls.update();
  showState();
}

void PreferencePane::saved() {
  m_controls.saved();
  showState();
}

void PreferencePane::gather(PreferenceForm& form) const {
  m_controls.gather(form);
}

} // namespace tockwise
