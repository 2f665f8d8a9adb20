// The panes of services that this version does not reach: laid out and grey, with the reason.
#pragma once

#include "prefs/ui/preference_pane.h"
#include "prefs/ui/preference_surroundings.h"

#include <memory>

namespace Ui {
class CalendarPane;
class CloudPane;
} // namespace Ui

namespace tockwise {

/// Main thread.
class CalendarPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit CalendarPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~CalendarPane() override;

 private:
  std::unique_ptr<Ui::CalendarPane> m_ui;
};

/// Main thread.
class CloudPane final : public PreferencePane {
  Q_OBJECT
 public:
  explicit CloudPane(const PreferenceSurroundings& surroundings, QWidget* parent = nullptr);
  ~CloudPane() override;

 private:
  std::unique_ptr<Ui::CloudPane> m_ui;
};

} // namespace tockwise
