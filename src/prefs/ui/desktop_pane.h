// The pane that shows what works on this desktop.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

namespace Ui {
class DesktopPane;
}

namespace tockwise {

/// Main thread. Looks each time it is shown, not before.
class DesktopPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit DesktopPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~DesktopPane() override;

  /// Looks again, and shows what was found.
  void checkAgain();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* makeRow(const DesktopCheck& check);

  std::function<std::vector<DesktopCheck>()> m_desktopChecks;
  std::vector<DesktopCheck> m_shown;
  std::unique_ptr<Ui::DesktopPane> m_ui;
};

} // namespace tockwise
