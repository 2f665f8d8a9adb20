// The pane of where e-mail and text messages of reminders go.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

namespace Ui {
class MessagesPane;
}

namespace tockwise {

/// Main thread.
class MessagesPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit MessagesPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~MessagesPane() override;

 private:
  std::unique_ptr<Ui::MessagesPane> m_ui;
};

} // namespace tockwise
