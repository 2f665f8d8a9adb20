// The pane of the icon in the panel and of what its menu shows of each reminder.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

namespace Ui {
class MenuPane;
}

namespace tockwise {

/// Main thread.
class MenuPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit MenuPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~MenuPane() override;

 private:
  void showState() override;
  void makeClocks();

  const Clock& m_clock;
  std::unique_ptr<Ui::MenuPane> m_ui;
};

} // namespace tockwise
