#include "prefs/ui/preference_window_controller.h"

#include "ui_PreferenceWindowCalendar.h"

namespace tockwise {

PreferenceWindowController::PreferenceWindowController(PreferenceSurroundings surroundings,
                                                       QWidget* parent)
    : QWidget(parent),
      m_surroundings(std::move(surroundings)),
      m_ui(std::make_unique<Ui::PreferenceWindowCalendar>()) {
  m_ui->setupUi(this);
}

PreferenceWindowController::~PreferenceWindowController() = default;

void PreferenceWindowController::prefs() {
  show();
}

void PreferenceWindowController::settingsChanged() {}

bool PreferenceWindowController::savePreferences() {
  return true;
}

void PreferenceWindowController::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
}

} // namespace tockwise
