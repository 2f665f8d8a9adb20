// The pane of what holds for the program as a whole: the login item and the hot keys.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

namespace Ui {
class GeneralPane;
}

namespace tockwise {

/// Main thread.
class GeneralPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit GeneralPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~GeneralPane() override;

  void gather(PreferenceForm& form) const override;
  bool isEdited() const override { return m_loginItemChosen || PreferencePane::isEdited(); }

 private:
  void showState() override;
  /// The box was clicked: the login item comes or goes at once.
  void loginItem(bool wanted);
  void showLoginItem();
  void showHotKeys();

  LoginItems& m_loginItems;
  HotKeys& m_hotKeys;
  QString m_loginItemFailure;     // why the last click had no effect
  bool m_loginItemChosen = false; // clicked, and the setting not saved yet
  std::unique_ptr<Ui::GeneralPane> m_ui;
};

} // namespace tockwise
